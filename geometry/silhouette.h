// Which edges between two polygons a plan shows.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/edge.h"
#include "ktscene/kt_point3.h"

// How a polygon stands to the viewer, as far as it can be told without its unit normal.
enum class Facing : std::uint8_t {
  // The unit normal's z is well above 0.001 on one side or the other; kUp is the side from which
  // the polygon runs counter-clockwise.
  kUp,
  kDown,
  // The unit normal's z is 0, or the polygon has no normal.
  kEdgeOn,
  // Only the unit normal can tell.
  kUnsure,
};

// The polygons of a set: flat, each closed by -7, polygon f at position starts[f].
struct PolygonSet {
  const std::vector<KtPoint3>& points;
  const std::vector<int>& polygons;
  const std::vector<std::uint32_t>& starts;
  // Turns the front of every polygon; false: counter-clockwise.
  bool reverseOrientation;
};

// Replaces `facings` by those of the set's polygons.
void findFacings(const PolygonSet& set, std::vector<Facing>& facings);

// Whether the edge between the polygons f and g shows, by their unit normals: not when both face
// the same way, however sharp the crease (deliberately, a plan shows silhouettes); else when their
// z differ by more than a tolerance; else, both standing edge-on, when they meet at an angle.
bool isSilhouetteByNormals(const PolygonSet& set, std::uint32_t f, std::uint32_t g);

// The same answer about the edge that they share, for nearly all edges without a normal. Of an edge
// that runs along the view and is a point in plan, which nothing draws, it may be false instead.
bool isSilhouette(const PolygonSet& set, const std::vector<Facing>& facings, const Edge& edge,
                  std::uint32_t f, std::uint32_t g);
