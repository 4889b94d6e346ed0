// Finds points that nearly coincide.
#pragma once

#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"

namespace dxf2d::mesh {

struct Box {
  Point least = {};
  Point greatest = {};
};

// Goes through points, no two of them equal, in order, and keeps those that have no kept point
// within `distance`; `box` is around all of them. Returns for each the first kept point within the
// distance, itself if it is kept; nothing at all when all are kept, as they are where the distance
// is 0.
//
// Takes time linear in the points, however they lie. Nearly all have no other near them, and a set
// of bits by grid cells tells which do not, with few exceptions; only the rest is searched.
// `threads` share the first of these.
std::vector<Index, LargeAllocator<Index>> joinNear(std::span<const Point> points, const Box& box,
                                                   double distance, std::size_t threads = 1);

}  // namespace dxf2d::mesh
