// The insides of cut bodies.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "projection/segment_chains.h"

namespace dxf2d::projection {

// Fills what closed loops enclose (even-odd rule) with triangles, appended to `triangles` as
// three corners each. `segments` are the loops' sides in any order and direction; where all of them
// occur several times, as in bodies whose faces are given twice, they count once.
//
// The plane is cut into slabs between the heights of corners and of crossings of sides. Returns
// false and fills nothing if gaps wider than `weld`, or faces given twice here and there, would let
// the area end where there is no side: a slab then has an odd number of sides, or an area begins or
// ends at a height without one. So too if it would take too long, which is when tens of thousands
// of sides lie side by side.
bool appendCap(std::span<const GroupedSegment> segments, double weld,
               std::vector<std::array<PlanPoint, 3>>& triangles);

}  // namespace dxf2d::projection
