// Reads models of foreign formats with assimp.
#pragma once

#include <memory>
#include <string>

#include "app/model/model_files.h"
#include "app/model/plan_scene.h"

namespace Assimp {
class Importer;
}
struct aiScene;

namespace dxf2d {

// A model as assimp has read it: polygons are polygons, lines are lines, nothing is joined.
struct Model {
  Model();
  Model(Model&&) noexcept;
  ~Model();

  // What the reader asked for. Before the importer, whose streams refer to it.
  std::unique_ptr<ModelFiles> files;
  // Owns the scene.
  std::unique_ptr<Assimp::Importer> importer;
  // Never null.
  const aiScene* scene = nullptr;
  ModelSource source;
};

struct ReadOptions {
  // Only says whether the file's own statement about its axes is wanted (see uprightTurn).
  UpAxis up = UpAxis::kAuto;
  // Whether files outside the model's directory are read.
  bool allowsOutside = false;
  // Whether the spaces of IFC models are read.
  bool hasSpaces = false;
};

// Reads the model at `path`. Throws ModelError, also when a file cannot be read to its end, changes
// meanwhile, or when all that the model shows is missing; and std::bad_alloc.
Model readModel(const std::string& path, const ReadOptions& options = {});

}  // namespace dxf2d
