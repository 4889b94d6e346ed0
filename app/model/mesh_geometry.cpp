#include "app/model/mesh_geometry.h"

#include <algorithm>

#include "app/model/affine.h"
#include "geometry/outline/numbered_points.h"
#include "ktscene/kt_run_code.h"

namespace dxf2d {
namespace {

using Vertex = std::array<double, 3>;

// Sums that start or end at 0 keep -0 out of drawings, where it would show as "-0.000000".
template <typename Source>
Vertex widened(const Source& v) {
  return {static_cast<double>(v.x) + 0.0, static_cast<double>(v.y) + 0.0,
          static_cast<double>(v.z) + 0.0};
}

template <typename Source>
Vertex transformed(const Source& v, const std::array<double, 9>& m) {
  const double x = static_cast<double>(v.x);
  const double y = static_cast<double>(v.y);
  const double z = static_cast<double>(v.z);
  return {((x * m[0] + y * m[3]) + z * m[6]) + 0.0, ((x * m[1] + y * m[4]) + z * m[7]) + 0.0,
          ((x * m[2] + y * m[5]) + z * m[8]) + 0.0};
}

// Appends place(at(i)) of the first `count` vertices to `coords`; returns false when one is not
// finite.
template <typename At, typename Place>
bool appendCoords(const At& at, std::size_t count, Place place, std::vector<double>& coords) {
  // In batches, each looked at while it is in the near cache: filling the list with zeros first and
  // going through it again at the end would take as long as everything else.
  constexpr std::size_t kBatch = 256;
  std::array<double, 3 * kBatch> batch;
  double sum = 0.0;
  coords.reserve(3 * count);
  for (std::size_t begin = 0; begin < count;) {
    const std::size_t end = begin + std::min(kBatch, count - begin);
    double* out = batch.data();
    for (; begin < end; ++begin) {
      const Vertex vertex = place(at(begin));
      // A product with 0 is 0 for finite values and not a number for all others.
      sum += (vertex[0] * 0.0 + vertex[1] * 0.0) + vertex[2] * 0.0;
      out = std::copy(vertex.begin(), vertex.end(), out);
    }
    coords.insert(coords.end(), batch.data(), out);
  }
  return sum == 0.0;
}

template <typename At>
bool appendCoords(const At& at, std::size_t count, const std::array<double, 9>& residual,
                  std::vector<double>& coords) {
  if (residual == Affine{}.linear) {
    return appendCoords(
        at, count, [](const auto& v) { return widened(v); }, coords);
  }
  return appendCoords(
      at, count, [&](const auto& v) { return transformed(v, residual); }, coords);
}

bool appendCoords(const SourceMesh& mesh, const std::array<double, 9>& residual,
                  std::vector<double>& coords) {
  return mesh.WithVertices(
      [&](const auto& at) { return appendCoords(at, mesh.VertexCount(), residual, coords); });
}

// The triangles with corners of these numbers, as runs.
std::vector<int> triangleRuns(const PointNumbers& corners) {
  // In batches, for the same reason as coordinates.
  constexpr std::size_t kBatch = 256;
  std::array<int, 4 * kBatch> batch;
  std::vector<int> runs;
  runs.reserve(corners.size() / 3 * 4);
  for (std::size_t begin = 0; begin < corners.size();) {
    const std::size_t end = begin + std::min(3 * kBatch, corners.size() - begin);
    int* out = batch.data();
    for (; begin < end; begin += 3) {
      out = std::copy_n(corners.begin() + static_cast<std::ptrdiff_t>(begin), 3, out);
      *out++ = KtRunCode::kPolygon;
    }
    runs.insert(runs.end(), batch.data(), out);
  }
  return runs;
}

// The same points drawn from a sixth of the coordinates, so that neither they nor the plug-in's
// copies of them need be written and read. Points that only the residual brings together are left
// for the plug-in, which keeps the first of those.
std::shared_ptr<const KtFaceSet> weldedFaces(const StlTriangles& triangles,
                                             const std::array<double, 9>& residual,
                                             const Threading& threading) {
  struct Corner {
    double x;
    double y;
    double z;
  };
  std::vector<KtPoint3> points;
  PointNumbers corners;
  {
    std::vector<BlockPoints> blocks;
    const std::size_t count = 3 * triangles.Count();
    const auto vertexAt = [&](std::size_t i) {
      const Vertex vertex = widened(triangles.VertexAt(i));
      return KtPoint3(vertex[0], vertex[1], vertex[2]);
    };
    numberPoints(count, expectedPoints(count, count), vertexAt, threading.For(count), points,
                 corners, blocks);
  }
  auto faces = std::make_shared<KtFaceSet>();
  const auto pointAt = [&](std::size_t i) {
    return Corner{points[i].Get0(), points[i].Get1(), points[i].Get2()};
  };
  if (!appendCoords(pointAt, points.size(), residual, faces->coords)) {
    return nullptr;
  }
  faces->indices = triangleRuns(corners);
  return faces;
}

std::vector<int> polygonRuns(const SourceMesh& mesh, const MeshContent& content) {
  std::vector<int> runs(content.polygonCorners + content.polygons);
  int* out = runs.data();
  mesh.VisitFaces([&out](const unsigned* corners, unsigned count) {
    if (count < 3 || !isDrawn(corners, count)) {
      return;
    }
    for (unsigned i = 0; i < count; ++i) {
      *out++ = static_cast<int>(corners[i]);
    }
    *out++ = KtRunCode::kPolygon;
  });
  return runs;
}

std::vector<int> lineRuns(const SourceMesh& mesh, const MeshContent& content) {
  std::vector<int> runs;
  runs.reserve(3 * content.lines);
  mesh.VisitFaces([&runs](const unsigned* corners, unsigned count) {
    if (count == 2 && isDrawn(corners, 2)) {
      runs.insert(runs.end(), {static_cast<int>(corners[0]), static_cast<int>(corners[1]),
                               KtRunCode::kLineStrip});
    }
  });
  return runs;
}

}  // namespace

bool makeMeshGeometry(const SourceMesh& mesh, const MeshContent& content,
                      const std::array<double, 9>& residual, const Threading& threading,
                      MeshGeometry& geometry) {
  geometry = MeshGeometry{};
  if (content.IsEmpty()) {
    return true;
  }
  if (mesh.Triangles() != nullptr) {
    geometry.faces = weldedFaces(*mesh.Triangles(), residual, threading);
    return geometry.faces != nullptr;
  }
  std::vector<double> coords;
  if (!appendCoords(mesh, residual, coords)) {
    return false;
  }
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

}  // namespace dxf2d
