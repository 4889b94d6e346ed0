// Segments joined into polylines, group by group.
#pragma once

#include <cstddef>
#include <vector>

#include "projection/segment_chains.h"

namespace dxf2d::projection {

// The polylines in order of their groups, and otherwise in the order that they have.
Polylines sortedByGroup(const Polylines& lines);

// joinSegments, sorted by group. Each of several `threads` joins the segments of some groups.
Polylines joinByGroup(std::vector<GroupedSegment> segments, double weld, std::size_t threads);

}  // namespace dxf2d::projection
