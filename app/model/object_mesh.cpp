#include "app/model/object_mesh.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "ktscene/kt_run_code.h"
#include "mesh/point_collector.h"
#include "mesh/vector.h"
#include "platform/large_memory.h"

namespace dxf2d {
namespace {

using mesh::DrawnEdge;
using mesh::Index;
using mesh::Point;
using mesh::PolygonMesh;

template <typename Vertex>
Point transformed(const Vertex& v, const std::array<double, 9>& m) {
  const double x = static_cast<double>(v.x);
  const double y = static_cast<double>(v.y);
  const double z = static_cast<double>(v.z);
  // The depth, z, is compared and not written.
  return {zeroOrShown((x * m[0] + y * m[3]) + z * m[6]),
          zeroOrShown((x * m[1] + y * m[4]) + z * m[7]), (x * m[2] + y * m[5]) + z * m[8]};
}

// Collects the points that a set uses, numbered in the order of their first use.
class UsedPoints {
 public:
  explicit UsedPoints(const std::vector<Point>& points) : points_(points) {}

  int NumberOf(Index point) {
    if (numbers_.empty()) {
      numbers_.assign(points_.size(), -1);
    }
    int& number = numbers_[point];
    if (number < 0) {
      number = static_cast<int>(coords_.size() / 3);
      coords_.insert(coords_.end(), points_[point].begin(), points_[point].end());
    }
    return number;
  }
  std::vector<double> Take() { return std::move(coords_); }

 private:
  const std::vector<Point>& points_;
  std::vector<int> numbers_;
  std::vector<double> coords_;
};

}  // namespace

bool appendMesh(const SourceMesh& source, const MeshContent& content,
                const std::array<double, 9>& residual, Index part, PolygonMesh& mesh) {
  if (content.IsEmpty()) {
    return true;
  }
  const auto firstPoint = static_cast<Index>(mesh.points.size());
  const std::size_t vertexCount = source.VertexCount();
  mesh.points.reserve(mesh.points.size() + vertexCount);
  const double sum = source.WithVertices([&](const auto& at) {
    double finite = 0.0;
    for (std::size_t i = 0; i < vertexCount; ++i) {
      const Point& point = mesh.points.emplace_back(transformed(at(i), residual));
      // A product with 0 is 0 for finite values and not a number for all others.
      finite += (point[0] * 0.0 + point[1] * 0.0) + point[2] * 0.0;
    }
    return finite;
  });
  mesh.corners.reserve(mesh.corners.size() + content.polygonCorners);
  mesh.starts.reserve(mesh.starts.size() + content.polygons);
  mesh.parts.reserve(mesh.parts.size() + content.polygons);
  source.VisitFaces([&](const unsigned* corners, unsigned count) {
    if (count < 2 || !isDrawn(corners, count)) {
      return;
    }
    if (count == 2) {
      mesh.segments.push_back({firstPoint + corners[0], firstPoint + corners[1], part});
      return;
    }
    for (unsigned i = 0; i < count; ++i) {
      mesh.corners.push_back(firstPoint + corners[i]);
    }
    mesh.starts.push_back(static_cast<Index>(mesh.corners.size()));
    mesh.parts.push_back(part);
  });
  return sum == 0.0;
}

bool appendTriangles(const StlTriangles& triangles, const std::array<double, 9>& residual,
                     Index part, std::size_t threads, PolygonMesh& mesh) {
  const std::size_t count = triangles.Count();
  const std::size_t firstPoint = mesh.points.size();
  const std::size_t firstCorner = mesh.corners.size();
  reserveLarge(mesh.corners, firstCorner + 3 * count);
  mesh.corners.resize(firstCorner + 3 * count);
  const auto makePoints = [&](std::size_t begin, std::size_t size, Point* out) {
    const std::size_t end = begin + size;
    for (std::size_t i = begin; i < end;) {
      if (i % 3 != 0 || end - i < 3) {
        *out++ = transformed(triangles.VertexAt(i++), residual);
        continue;
      }
      for (const StlTriangles::Vertex& corner : triangles.TriangleAt(i / 3)) {
        *out++ = transformed(corner, residual);
      }
      i += 3;
    }
  };
  mesh::collectPoints(3 * count, threads, makePoints, mesh.points,
                      mesh.corners.data() + firstCorner);
  if (!std::all_of(mesh.points.begin() + static_cast<std::ptrdiff_t>(firstPoint), mesh.points.end(),
                   mesh::isUsablePoint)) {
    mesh.points.resize(firstPoint);
    mesh.corners.resize(firstCorner);
    return false;
  }
  reserveLarge(mesh.starts, mesh.starts.size() + count);
  for (std::size_t i = 1; i <= count; ++i) {
    mesh.starts.push_back(static_cast<Index>(firstCorner + 3 * i));
  }
  reserveLarge(mesh.parts, mesh.parts.size() + count);
  mesh.parts.resize(mesh.parts.size() + count, part);
  return true;
}

std::shared_ptr<const KtLineSet> lineSetOf(const PolygonMesh& mesh,
                                           std::span<const DrawnEdge> edges) {
  UsedPoints points(mesh.points);
  auto lines = std::make_shared<KtLineSet>();
  lines->indices.reserve(3 * edges.size());
  for (const DrawnEdge& edge : edges) {
    const int first = points.NumberOf(edge.a);
    lines->indices.insert(lines->indices.end(),
                          {first, points.NumberOf(edge.b), KtRunCode::kSegment});
  }
  lines->coords = points.Take();
  return lines;
}

}  // namespace dxf2d
