// The fast path for line sets that are chained already.
#pragma once

#include <vector>

#include "geometry/outline/outline.h"

namespace dxf2d {

// Returns true only if BuildLineOutline would change nothing in a line set but flatten its points:
// if all points are finite and no two are at the same place in plan, and the runs are line strips
// (kLineStrip or kSegment) that name points in ascending order, each at most once, except that a
// run of three or more may end where it began. Then
//   - the weld keeps every point and its number,
//   - the edges are distinct, are not degenerate, and are in edge order as the runs give them,
//   - a run's chain begins with its first edge, and at each of its points one unused edge remains,
//     the next one; no edge of another run is there.
// Most line sets are like that. False for such a set is possible, and happens for a few very large
// ones: places are compared by their hashes.
bool isAlreadyChained(const PlacedCoords& placed, const std::vector<int>& indices);

}  // namespace dxf2d
