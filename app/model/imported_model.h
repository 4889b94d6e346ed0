// Models that an importer program has turned into binary glTF.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "app/model/length_unit.h"
#include "app/model/model_reader.h"
#include "app/model/up_axis.h"

namespace dxf2d {

// What the importer says in asset.extras of its result (see docs/importers.md).
struct ImporterStatement {
  LengthUnit unit = kMeter;
  UpAxis up = UpAxis::kAuto;
  // To be added to all coordinates.
  std::array<double, 3> origin{};
  // The lines of nodes with faces are the edges of these faces.
  bool hasTrueEdges = false;
  // What was left out, as parts of a sentence.
  std::vector<std::string> notes;
};

// The statement in a binary glTF. Throws ModelError for what is not one, or states what cannot be,
// which is the fault of the importer `reader`; `path` stands for the model.
ImporterStatement importerStatement(std::string_view glb, const std::string& path,
                                    const std::string& reader);

// Reads the binary glTF at `file` that the importer `reader` has made of the model at `path`.
// Throws ModelError and std::bad_alloc.
Model readImportedModel(const std::string& file, const std::string& path,
                        const std::string& reader);

}  // namespace dxf2d
