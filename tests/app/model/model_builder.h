// Models by hand, as a reader would deliver them.
#pragma once

#include <assimp/scene.h>

#include <memory>
#include <vector>

namespace dxf2d {

using Corners = std::vector<unsigned>;

inline aiMesh* makeMesh(const std::vector<aiVector3D>& vertices, const std::vector<Corners>& faces,
                        unsigned material = 0) {
  auto* mesh = new aiMesh;
  mesh->mName = "mesh";
  mesh->mMaterialIndex = material;
  mesh->mNumVertices = static_cast<unsigned>(vertices.size());
  mesh->mVertices = new aiVector3D[vertices.size()];
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    mesh->mVertices[i] = vertices[i];
  }
  mesh->mNumFaces = static_cast<unsigned>(faces.size());
  mesh->mFaces = new aiFace[faces.size()];
  for (std::size_t f = 0; f < faces.size(); ++f) {
    aiFace& face = mesh->mFaces[f];
    face.mNumIndices = static_cast<unsigned>(faces[f].size());
    face.mIndices = new unsigned[faces[f].size()];
    for (std::size_t i = 0; i < faces[f].size(); ++i) {
      face.mIndices[i] = faces[f][i];
    }
  }
  return mesh;
}

inline aiMesh* makeSquareMesh(unsigned material = 0) {
  return makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2, 3}}, material);
}

inline aiNode* makeNode(const char* name, const aiMatrix4x4& transform,
                        const std::vector<unsigned>& meshes) {
  auto* node = new aiNode(name);
  node->mTransformation = transform;
  node->mNumMeshes = static_cast<unsigned>(meshes.size());
  node->mMeshes = new unsigned[meshes.size()];
  for (std::size_t i = 0; i < meshes.size(); ++i) {
    node->mMeshes[i] = meshes[i];
  }
  return node;
}

inline aiNode* withChildren(aiNode* node, const std::vector<aiNode*>& children) {
  node->addChildren(static_cast<unsigned>(children.size()), const_cast<aiNode**>(children.data()));
  return node;
}

inline std::unique_ptr<aiScene> makeModel(const std::vector<aiMesh*>& meshes, aiNode* root) {
  auto scene = std::make_unique<aiScene>();
  scene->mNumMeshes = static_cast<unsigned>(meshes.size());
  scene->mMeshes = new aiMesh*[meshes.size()];
  for (std::size_t i = 0; i < meshes.size(); ++i) {
    scene->mMeshes[i] = meshes[i];
  }
  scene->mRootNode = root;
  return scene;
}

inline aiMatrix4x4 shiftedBy(float x, float y, float z) {
  aiMatrix4x4 matrix;
  return aiMatrix4x4::Translation(aiVector3D(x, y, z), matrix);
}

inline aiMatrix4x4 scaledBy(float x, float y, float z) {
  aiMatrix4x4 matrix;
  return aiMatrix4x4::Scaling(aiVector3D(x, y, z), matrix);
}

inline aiMatrix4x4 turnedBy(float radians) {
  aiMatrix4x4 matrix;
  return aiMatrix4x4::RotationZ(radians, matrix);
}

inline aiMatrix4x4 tiltedBy(float radians) {
  aiMatrix4x4 matrix;
  return aiMatrix4x4::RotationX(radians, matrix);
}

}  // namespace dxf2d
