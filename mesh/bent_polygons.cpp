#include "mesh/bent_polygons.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "mesh/ear_clipping.h"
#include "mesh/vector.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

using Quad = std::array<Index, 4>;

// The same polygon from its first corner, or from its second where that one or the last is concave
// and no other is: from where its diagonal runs. The same diagonal when the polygon is reversed.
Quad fromDiagonal(const PolygonMesh& mesh, std::size_t p) {
  const std::span<const Index> corners = mesh.Polygon(p);
  const Vector normal = doubledArea(mesh, p);
  const auto at = [&](std::size_t i) -> const Point& { return mesh.points[corners[i % 4]]; };
  const auto isConcave = [&](std::size_t i) {
    const Vector turn = cross(difference(at(i), at(i + 3)), difference(at(i + 1), at(i)));
    return dot(turn, normal) < 0.0;
  };
  const bool isAcross = !isConcave(0) && !isConcave(2) && (isConcave(1) || isConcave(3));
  const std::size_t first = isAcross ? 1 : 0;
  return {corners[first], corners[(first + 1) % 4], corners[(first + 2) % 4],
          corners[(first + 3) % 4]};
}

// Which side of a triangle the viewer sees: 1 its front, -1 its back, 0 neither.
int sideOf(const Point& a, const Point& b, const Point& c) {
  return seenSide(cross(difference(b, a), difference(c, a)));
}

// Whether a triangle is not wider than `distance`.
bool isThin(const Point& a, const Point& b, const Point& c, double distance) {
  const Vector u = difference(b, a);
  const Vector v = difference(c, a);
  const Vector w = difference(c, b);
  const Vector normal = cross(u, v);
  const double longest = std::max({dot(u, u), dot(v, v), dot(w, w)});
  return !(dot(normal, normal) > distance * distance * longest);
}

using Triangles = std::vector<std::array<Index, 3>>;

// Whether a corner is more than `distance` off the plane through the first with the normal.
bool isWarped(const PolygonMesh& mesh, std::size_t p, double distance) {
  const std::span<const Index> corners = mesh.Polygon(p);
  const Vector normal = doubledArea(mesh, p);
  const double limit = distance * length(normal);
  return std::ranges::any_of(corners, [&](Index corner) {
    const Vector away = difference(mesh.points[corner], mesh.points[corners[0]]);
    return std::fabs(dot(away, normal)) > limit;
  });
}

// Whether one of the triangles shows its front and another its back, and none is thin.
bool isBent(const PolygonMesh& mesh, const Triangles& triangles, double distance) {
  bool hasFront = false;
  bool hasBack = false;
  for (const auto& [a, b, c] : triangles) {
    const int side = sideOf(mesh.points[a], mesh.points[b], mesh.points[c]);
    hasFront = hasFront || side > 0;
    hasBack = hasBack || side < 0;
  }
  return hasFront && hasBack && std::ranges::none_of(triangles, [&](const auto& triangle) {
           const auto [a, b, c] = triangle;
           return isThin(mesh.points[a], mesh.points[b], mesh.points[c], distance);
         });
}

// The triangles of a polygon that has to be split; none for others. Whether it has to does not
// depend on the way it is wound.
Triangles bentTriangles(const PolygonMesh& mesh, std::size_t p, double distance) {
  const std::span<const Index> corners = mesh.Polygon(p);
  if (corners.size() == 4) {
    const Quad quad = fromDiagonal(mesh, p);
    const Triangles both = {{quad[0], quad[1], quad[2]}, {quad[0], quad[2], quad[3]}};
    return isBent(mesh, both, distance) ? both : Triangles();
  }
  // Most polygons of many corners are flat, which is soon seen.
  if (corners.size() < 4 || corners.size() > kMostBentCorners || !isWarped(mesh, p, distance)) {
    return {};
  }
  Triangles triangles = clipEars(mesh.points, corners);
  // From the same corner, as orientation reverses it.
  std::vector<Index> reversed(corners.begin(), corners.end());
  std::reverse(reversed.begin() + 1, reversed.end());
  const bool isSplit =
      isBent(mesh, triangles, distance) && isBent(mesh, clipEars(mesh.points, reversed), distance);
  return isSplit ? triangles : Triangles();
}

}  // namespace

std::size_t splitBentPolygons(PolygonMesh& mesh, double distance, std::size_t threads) {
  // A point that closes a T-junction is up to the distance away from a straight edge.
  constexpr double kThinnest = 4.0;
  struct Split {
    std::size_t polygon;
    Triangles triangles;
  };
  const std::vector<Split> bent =
      collectInParallel<Split>(mesh.PolygonCount(), threads, [&](std::size_t p, auto& list) {
        Triangles triangles = bentTriangles(mesh, p, kThinnest * distance);
        if (!triangles.empty()) {
          list.push_back({p, std::move(triangles)});
        }
      });
  if (bent.empty()) {
    return 0;
  }
  std::size_t added = 0;
  for (const Split& one : bent) {
    added += one.triangles.size();
  }
  PolygonMesh split;
  split.corners.reserve(mesh.corners.size() + 3 * added);
  split.starts.reserve(mesh.starts.size() + added);
  split.parts.reserve(mesh.parts.size() + added);
  auto next = bent.begin();
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    if (next == bent.end() || next->polygon != p) {
      split.Add(mesh.Polygon(p), mesh.parts[p]);
      continue;
    }
    for (const std::array<Index, 3>& triangle : next->triangles) {
      split.Add(triangle, mesh.parts[p]);
    }
    ++next;
  }
  mesh.corners = std::move(split.corners);
  mesh.starts = std::move(split.starts);
  mesh.parts = std::move(split.parts);
  return bent.size();
}

}  // namespace dxf2d::mesh
