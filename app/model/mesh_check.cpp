#include "app/model/mesh_check.h"

#include <assimp/mesh.h>

#include <cmath>

namespace {

// The first vertex with a coordinate that is not finite, or the number of vertices.
unsigned firstBrokenVertex(const aiMesh& mesh) {
  // One look at the sum first: it is not a number as soon as one term is not finite. A sum of
  // finite terms in double precision cannot overflow.
  double sum = 0.0;
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const aiVector3D& v = mesh.mVertices[i];
    sum += (static_cast<double>(v.x) + static_cast<double>(v.y)) + static_cast<double>(v.z);
  }
  if (std::isfinite(sum)) return mesh.mNumVertices;
  unsigned i = 0;
  while (i < mesh.mNumVertices && std::isfinite(mesh.mVertices[i].x) &&
         std::isfinite(mesh.mVertices[i].y) && std::isfinite(mesh.mVertices[i].z)) {
    ++i;
  }
  return i;
}

// The first corner that names no vertex, or the number of corners.
unsigned firstBrokenCorner(const aiFace& face, unsigned vertexCount) {
  unsigned i = 0;
  while (i < face.mNumIndices && face.mIndices[i] < vertexCount) ++i;
  return i;
}

}  // namespace

bool isDrawn(const unsigned* corners, unsigned count) {
  for (unsigned i = 1; i < count; ++i) {
    if (corners[i] != corners[0]) return true;
  }
  return false;
}

MeshContent checkMesh(const aiMesh& mesh, std::string& fault) {
  fault.clear();
  MeshContent content;
  if (mesh.mNumFaces == 0 || mesh.mFaces == nullptr) return content;
  const unsigned vertexCount = mesh.mVertices == nullptr ? 0 : mesh.mNumVertices;
  if (vertexCount != 0) {
    const unsigned broken = firstBrokenVertex(mesh);
    if (broken != vertexCount) {
      fault = "vertex " + std::to_string(broken) + " is not finite";
      return content;
    }
  }
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    const unsigned corner = firstBrokenCorner(face, vertexCount);
    if (corner != face.mNumIndices) {
      fault = "face " + std::to_string(f) + " names vertex " +
              std::to_string(face.mIndices[corner]) + " of " + std::to_string(vertexCount);
      return content;
    }
    if (face.mNumIndices == 1) {
      ++content.points;
    } else if (!isDrawn(face.mIndices, face.mNumIndices)) {
      ++content.degenerate;
    } else if (face.mNumIndices == 2) {
      ++content.lines;
    } else {
      ++content.polygons;
      content.polygonCorners += face.mNumIndices;
    }
  }
  return content;
}
