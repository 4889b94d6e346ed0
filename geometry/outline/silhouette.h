// Decides which edges between two polygons a plan shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geometry/outline/edge.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

// Which way a polygon faces, as far as that is known without its unit normal.
enum class Facing : std::uint8_t {
  // The unit normal's z is well above 0.001 or well below -0.001 for a polygon that is
  // counter-clockwise, seen from above or from below.
  kUp,
  kDown,
  // The unit normal's z is 0, or the polygon has no normal.
  kEdgeOn,
  // Only the unit normal can decide.
  kUnsure,
};

// The polygons of a set: flat, each ended by KtRunCode::kPolygon, polygon f at position starts[f].
// A code within a run leaves polygons of fewer than three entries, too. Without `starts`,
// triangles: three entries each, and no codes.
struct PolygonSet {
  const std::vector<KtPoint3>& points;
  std::span<const int> polygons;
  std::span<const std::uint32_t> starts;
  // The front is the side from which polygons are clockwise; false: counter-clockwise.
  bool reverseOrientation;

  std::size_t Count() const { return starts.empty() ? polygons.size() / 3 : starts.size(); }
  std::span<const int> CornersOf(std::uint32_t polygon) const;
};

// Replaces `facings` by those of the set's polygons, in their order.
void findFacings(const PolygonSet& set, std::size_t threads, std::vector<Facing>& facings);

// Returns whether the edge between the polygons f and g shows, by their unit normals: not if both
// face the same way, however sharp the crease (deliberately: a plan shows silhouettes); otherwise
// if their z differ by more than a tolerance; otherwise, if both are edge-on, when they meet at an
// angle.
bool isSilhouetteByNormals(const PolygonSet& set, std::uint32_t f, std::uint32_t g);

// Returns the same for the edge that they share, in nearly all cases without computing a normal.
// For an edge along the view direction, a point in plan that is never drawn, it may return false
// instead.
bool isSilhouette(const PolygonSet& set, const std::vector<Facing>& facings, const Edge& edge,
                  std::uint32_t f, std::uint32_t g);

}  // namespace dxf2d
