// Reads models of foreign formats with assimp.
#pragma once

#include <memory>
#include <string>

#include "app/model/up_axis.h"

namespace Assimp {
class Importer;
}
struct aiScene;

// A model as assimp has read it: polygons are polygons, lines are lines, nothing is joined.
struct Model {
  Model();
  Model(Model&&) noexcept;
  ~Model();

  // Owns the scene.
  std::unique_ptr<Assimp::Importer> importer;
  // Never null.
  const aiScene* scene = nullptr;
  // The reader's name, as aiImporterDesc::mName has it.
  std::string importerName;
};

// Reads the model at `path`. `up` only says whether the file's own statement about its axes is
// wanted (see uprightTurn). Throws ModelError, and
// std::bad_alloc.
Model readModel(const std::string& path, UpAxis up);
