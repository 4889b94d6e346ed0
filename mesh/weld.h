// Joins points that coincide.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/near_points.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

inline constexpr double kDefaultWeldShare = 1e-6;

// The points that polygons and segments use.
struct UsedPoints {
  std::vector<char> isUsed;  // by point
  std::size_t count = 0;
  bool areUsable = true;  // whether all of them are, by isUsablePoint
  Box box;                // around them, if they are
  // Length of the box's diagonal.
  double diagonal = 0.0;
  // The same, but at most 10,000 times the median length of the edges of the polygons and of the
  // segments (of a few thousand of them, evenly chosen). Only what lies far from everything else
  // makes a box that large, and it must not make the points of the rest coincide.
  double extent = 0.0;

  // Whether no two of the points are equal and all are used; nothing is in isUsed then.
  bool areDistinct = false;

  // `areKnownDistinct`: what areDistinct says, known beforehand. `threads` share the work.
  explicit UsedPoints(const PolygonMesh& mesh, bool areKnownDistinct = false,
                      std::size_t threads = 1);

  // Distances within which points of the object coincide, in units of the mesh; 0 where doubles
  // cannot tell them apart: `share` of the diagonal, and kDefaultWeldShare of the extent.
  double WeldDistance(double share) const;
  double DefaultWeldDistance() const;
};

// Keeps of points within `distance` of each other the earliest, in their order, and leaves out
// points that nothing uses; `corners` and `segments` name what is kept. `used` are the points in
// use, all usable. Returns how many of them were left out. `threads` share the work.
std::size_t weld(PolygonMesh& mesh, const UsedPoints& used, double distance,
                 std::size_t threads = 1);

// Leaves out points that nothing uses.
void dropUnusedPoints(PolygonMesh& mesh);

}  // namespace dxf2d::mesh
