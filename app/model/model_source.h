// Where a model comes from.
#pragma once

#include <memory>
#include <string>

#include "app/model/length_unit.h"
#include "app/model/source_mesh.h"
#include "app/model/stl_triangles.h"

struct aiScene;

namespace dxf2d {

struct ModelSource {
  // Stands for the model in messages.
  std::string path;
  // The reader's name, as aiImporterDesc::mName has it.
  std::string importer;
  // That the format or the file states (statedUnit).
  LengthUnit unit;
  // What the only mesh holds in place of its own vertices and faces; null for all other meshes.
  std::shared_ptr<const StlTriangles> triangles = nullptr;
};

// Mesh `mesh` of a model, which exists.
SourceMesh sourceMesh(const aiScene& model, const ModelSource& source, unsigned mesh);

// Throws ModelError when the file has changed under what was taken from it since it was read.
void requireUnchanged(const ModelSource& source);

}  // namespace dxf2d
