// A mesh of a model, wherever its reader keeps it.
#pragma once

#include <assimp/mesh.h>

#include <array>
#include <cstddef>

#include "app/model/stl_triangles.h"

namespace dxf2d {

// Refers to a mesh of assimp's or to the triangles that it stands for.
class SourceMesh {
 public:
  // `triangles`, unless null, are what the mesh holds in place of its own vertices and faces.
  explicit SourceMesh(const aiMesh& mesh, const StlTriangles* triangles = nullptr)
      : mesh_(mesh), triangles_(triangles) {}

  // The triangles that share no vertices: vertex i is corner i % 3 of triangle i / 3. Null for a
  // mesh of assimp's.
  const StlTriangles* Triangles() const { return triangles_; }

  std::size_t VertexCount() const {
    if (triangles_ != nullptr) {
      return 3 * triangles_->Count();
    }
    return mesh_.mVertices == nullptr ? 0 : mesh_.mNumVertices;
  }
  std::size_t FaceCount() const {
    if (triangles_ != nullptr) {
      return triangles_->Count();
    }
    return mesh_.mFaces == nullptr ? 0 : mesh_.mNumFaces;
  }

  // Returns use(at), where at(i) is vertex i, with members x, y and z.
  template <typename Use>
  auto WithVertices(Use use) const {
    if (triangles_ != nullptr) {
      return use([this](std::size_t i) { return triangles_->VertexAt(i); });
    }
    return use([this](std::size_t i) -> const aiVector3D& { return mesh_.mVertices[i]; });
  }

  // Calls visit(corners, count), numbers of vertices, for each face.
  template <typename Visit>
  void VisitFaces(Visit visit) const {
    const std::size_t count = FaceCount();
    if (triangles_ != nullptr) {
      for (unsigned i = 0; i < count; ++i) {
        const std::array<unsigned, 3> corners = {3 * i, 3 * i + 1, 3 * i + 2};
        visit(corners.data(), 3U);
      }
      return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      visit(static_cast<const unsigned*>(mesh_.mFaces[i].mIndices), mesh_.mFaces[i].mNumIndices);
    }
  }

 private:
  const aiMesh& mesh_;
  const StlTriangles* triangles_;
};

}  // namespace dxf2d
