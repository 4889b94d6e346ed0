// Segments that lie on one another.
#pragma once

#include <span>
#include <vector>

#include "projection/segment_chains.h"

namespace dxf2d::projection {

// What of `segments` lies neither on one of `drawn` nor on an earlier one of its own kind, whatever
// their groups and directions. Segments lie on one line when they are within `weld` of each other
// and run in the same direction, to a millionth of a radian; remainders no longer than `weld` are
// left out. The time is n log n in the number of segments.
std::vector<GroupedSegment> withoutCovered(std::span<const GroupedSegment> segments,
                                           std::span<const GroupedSegment> drawn, double weld);

}  // namespace dxf2d::projection
