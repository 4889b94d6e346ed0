// Where a model comes from.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "app/model/length_unit.h"
#include "app/model/source_mesh.h"
#include "app/model/stl_triangles.h"
#include "app/model/up_axis.h"

struct aiScene;

namespace dxf2d {

struct ModelSource {
  // Stands for the model in messages.
  std::string path;
  // The reader's name: as aiImporterDesc::mName has it, or that of an importer program.
  std::string importer;
  // That the format or the file states (statedUnit).
  LengthUnit unit;
  // What the only mesh holds in place of its own vertices and faces; null for all other meshes.
  std::shared_ptr<const StlTriangles> triangles = nullptr;

  // ---- What an importer program states (importerStatement).

  UpAxis up = UpAxis::kAuto;
  // To be added to all coordinates.
  std::array<double, 3> origin{};
  // Lines of objects with faces are the edges of these.
  bool hasTrueEdges = false;
  std::vector<std::string> notes{};
};

// The map that stands a model upright, about its own origin, with the up axis that its source
// states (see the other uprightTurn).
Affine uprightTurn(const aiScene& model, const ModelSource& source, UpAxis asked);

// Mesh `mesh` of a model, which exists.
SourceMesh sourceMesh(const aiScene& model, const ModelSource& source, unsigned mesh);

// Throws ModelError when the file has changed under what was taken from it since it was read.
void requireUnchanged(const ModelSource& source);

}  // namespace dxf2d
