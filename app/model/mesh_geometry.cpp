#include "app/model/mesh_geometry.h"

#include <assimp/mesh.h>

#include <cmath>

#include "app/model/affine.h"

namespace {

constexpr int kPolygonEnd = -7;
constexpr int kLineStripEnd = -6;

// Sums that start or end at 0 keep -0 out of drawings, where it would show as "-0.000000".
void widen(const aiMesh& mesh, double* out) {
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const aiVector3D& v = mesh.mVertices[i];
    *out++ = static_cast<double>(v.x) + 0.0;
    *out++ = static_cast<double>(v.y) + 0.0;
    *out++ = static_cast<double>(v.z) + 0.0;
  }
}

void transform(const aiMesh& mesh, const std::array<double, 9>& m, double* out) {
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const double x = static_cast<double>(mesh.mVertices[i].x);
    const double y = static_cast<double>(mesh.mVertices[i].y);
    const double z = static_cast<double>(mesh.mVertices[i].z);
    *out++ = ((x * m[0] + y * m[3]) + z * m[6]) + 0.0;
    *out++ = ((x * m[1] + y * m[4]) + z * m[7]) + 0.0;
    *out++ = ((x * m[2] + y * m[5]) + z * m[8]) + 0.0;
  }
}

bool allFinite(const std::vector<double>& values) {
  // A product with 0 is 0 for finite values and not a number for all others.
  double sum = 0.0;
  for (const double value : values) sum += value * 0.0;
  return sum == 0.0;
}

std::vector<double> transformedCoords(const aiMesh& mesh, const std::array<double, 9>& rest) {
  std::vector<double> coords(std::size_t{3} * mesh.mNumVertices);
  if (rest == Affine{}.linear) {
    widen(mesh, coords.data());
  } else {
    transform(mesh, rest, coords.data());
  }
  return coords;
}

std::vector<int> polygonRuns(const aiMesh& mesh, const MeshContent& content) {
  std::vector<int> runs(content.polygonCorners + content.polygons);
  int* out = runs.data();
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (face.mNumIndices < 3 || !isDrawn(face.mIndices, face.mNumIndices)) continue;
    for (unsigned i = 0; i < face.mNumIndices; ++i) *out++ = static_cast<int>(face.mIndices[i]);
    *out++ = kPolygonEnd;
  }
  return runs;
}

std::vector<int> lineRuns(const aiMesh& mesh, const MeshContent& content) {
  std::vector<int> runs;
  runs.reserve(3 * content.lines);
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (face.mNumIndices != 2 || !isDrawn(face.mIndices, 2)) continue;
    runs.insert(runs.end(), {static_cast<int>(face.mIndices[0]), static_cast<int>(face.mIndices[1]),
                             kLineStripEnd});
  }
  return runs;
}

}  // namespace

bool makeMeshGeometry(const aiMesh& mesh, const MeshContent& content,
                      const std::array<double, 9>& rest, MeshGeometry& geometry) {
  geometry = MeshGeometry{};
  if (content.IsEmpty()) return true;
  std::vector<double> coords = transformedCoords(mesh, rest);
  if (!allFinite(coords)) return false;
  if (content.polygons != 0) {
    auto faces = std::make_shared<KtFaceSet>();
    faces->coords = content.lines != 0 ? coords : std::move(coords);
    faces->indices = polygonRuns(mesh, content);
    geometry.faces = std::move(faces);
  }
  if (content.lines != 0) {
    auto lines = std::make_shared<KtLineSet>();
    // Still whole: it is moved away above only where there are no lines.
    lines->coords = std::move(coords);  // NOLINT(bugprone-use-after-move)
    lines->indices = lineRuns(mesh, content);
    geometry.lines = std::move(lines);
  }
  return true;
}
