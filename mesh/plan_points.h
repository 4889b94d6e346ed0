// Points that lie above one another.
#pragma once

#include <vector>

#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"

namespace dxf2d::mesh {

struct PlanPoints {
  // By point: the earliest point at the same place in plan, kNone for those not looked at.
  std::vector<Index, LargeAllocator<Index>> first;
  // Whether a point was moved.
  bool isMoved = false;
};

// Looks at the points i with isLookedAt[i] and moves those within `distance` in plan of an earlier
// one above or below it; 0: none, points are at one place when x and y are equal. `threads` share
// the work.
PlanPoints joinInPlan(std::vector<Point>& points, const std::vector<char>& isLookedAt,
                      double distance, std::size_t threads = 1);

}  // namespace dxf2d::mesh
