// Directed segments joined into loops.
#pragma once

#include <cstddef>
#include <span>

#include "projection/segment_chains.h"

namespace dxf2d::projection {

// Joins the pieces of one boundary, which each have its inside on their left, into closed loops and
// appends these to `loops` as of group `group`. Ends within `weld` of each other are one. Pieces at
// the same place with opposite directions cancel out. Where a boundary touches itself, the loops
// part. Returns how many pieces are left over, which are not in any loop.
std::size_t appendBoundaryLoops(std::span<const GroupedSegment> pieces, std::uint64_t group,
                                double weld, Polylines& loops);

}  // namespace dxf2d::projection
