#include "mesh/contact_faces.h"

#include <array>
#include <span>

#include "mesh/polygon_filter.h"
#include "mesh/vector.h"

namespace dxf2d::mesh {

namespace {

// On which side of the plane through the edge from a to b with this normal a polygon goes on: 1, -1
// or, in the plane itself, 0.
int sideOf(const PolygonMesh& mesh, Index a, Index b, const EdgeUse& use, const Vector& normal) {
  const Vector along = difference(mesh.points[b], mesh.points[a]);
  const Vector front = doubledArea(mesh, use.Polygon());
  // A polygon lies to the left of its edges, as seen from its front.
  const Vector inward = cross(front, along);
  const double height = use.IsForward() ? dot(inward, normal) : -dot(inward, normal);
  constexpr double kLeastSine = 1e-6;
  const double limit = kLeastSine * length(inward) * length(normal);
  return (height > limit ? 1 : 0) - (height < -limit ? 1 : 0);
}

// Whether `use` is that of a polygon between the other two.
bool isBetween(const PolygonMesh& mesh, Index a, Index b, const EdgeUse& use,
               const std::array<EdgeUse, 2>& others) {
  const Vector normal = doubledArea(mesh, use.Polygon());
  return sideOf(mesh, a, b, others[0], normal) * sideOf(mesh, a, b, others[1], normal) < 0;
}

// By polygon, at how many of the edges of the suspects two others go on as dropContactFaces says.
std::vector<Index> countInnerEdges(const PolygonMesh& mesh, const EdgeTable& edges,
                                   const std::vector<char>& isSuspect) {
  std::vector<Index> counts(mesh.PolygonCount(), 0);
  edges.ForEachEdge([&](Index a, Index b, std::span<const EdgeUse> uses) {
    if (uses.size() != 3) {
      return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
      const std::array<EdgeUse, 2> others = {uses[(i + 1) % 3], uses[(i + 2) % 3]};
      const bool isAlone = isSuspect[uses[i].Polygon()] != 0 &&
                           isSuspect[others[0].Polygon()] == 0 &&
                           isSuspect[others[1].Polygon()] == 0;
      counts[uses[i].Polygon()] += isAlone && isBetween(mesh, a, b, uses[i], others) ? 1 : 0;
    }
  });
  return counts;
}

}  // namespace

std::size_t dropContactFaces(PolygonMesh& mesh, const EdgeTable& edges,
                             const std::vector<Index>& suspects) {
  if (suspects.empty()) {
    return 0;
  }
  std::vector<char> isSuspect(mesh.PolygonCount(), 0);
  for (const Index p : suspects) {
    isSuspect[p] = 1;
  }
  const std::vector<Index> counts = countInnerEdges(mesh, edges, isSuspect);
  return keepPolygons(mesh, [&](std::size_t p, std::span<const Index> corners) {
    return counts[p] != corners.size();
  });
}

}  // namespace dxf2d::mesh
