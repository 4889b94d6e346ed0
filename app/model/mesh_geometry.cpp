#include "app/model/mesh_geometry.h"

#include <assimp/mesh.h>

#include <algorithm>

#include "app/model/affine.h"

namespace {

constexpr int kPolygonEnd = -7;
constexpr int kLineStripEnd = -6;

using Vertex = std::array<double, 3>;

// Sums that start or end at 0 keep -0 out of drawings, where it would show as "-0.000000".
Vertex widened(const aiVector3D& v) {
  return {static_cast<double>(v.x) + 0.0, static_cast<double>(v.y) + 0.0,
          static_cast<double>(v.z) + 0.0};
}

Vertex transformed(const aiVector3D& v, const std::array<double, 9>& m) {
  const double x = static_cast<double>(v.x);
  const double y = static_cast<double>(v.y);
  const double z = static_cast<double>(v.z);
  return {((x * m[0] + y * m[3]) + z * m[6]) + 0.0, ((x * m[1] + y * m[4]) + z * m[7]) + 0.0,
          ((x * m[2] + y * m[5]) + z * m[8]) + 0.0};
}

// Appends place(v) of every vertex v to `coords`; answers false when one is not finite.
template <typename Place>
bool appendCoords(const aiMesh& mesh, Place place, std::vector<double>& coords) {
  // In batches, each looked at while it is in the near cache: filling the list with zeros first and
  // going through it again at the end would take as long as all the rest.
  constexpr unsigned kBatch = 256;
  std::array<double, std::size_t{3} * kBatch> batch;
  double sum = 0.0;
  coords.reserve(std::size_t{3} * mesh.mNumVertices);
  for (unsigned begin = 0; begin < mesh.mNumVertices;) {
    const unsigned end = begin + std::min(kBatch, mesh.mNumVertices - begin);
    double* out = batch.data();
    for (; begin < end; ++begin) {
      const Vertex vertex = place(mesh.mVertices[begin]);
      // A product with 0 is 0 for finite values and not a number for all others.
      sum += (vertex[0] * 0.0 + vertex[1] * 0.0) + vertex[2] * 0.0;
      out = std::copy(vertex.begin(), vertex.end(), out);
    }
    coords.insert(coords.end(), batch.data(), out);
  }
  return sum == 0.0;
}

bool appendCoords(const aiMesh& mesh, const std::array<double, 9>& rest,
                  std::vector<double>& coords) {
  if (rest == Affine{}.linear) return appendCoords(mesh, widened, coords);
  return appendCoords(
      mesh, [&rest](const aiVector3D& v) { return transformed(v, rest); }, coords);
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
  std::vector<double> coords;
  if (!appendCoords(mesh, rest, coords)) return false;
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
