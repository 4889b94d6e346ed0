// Which edge a line follows beyond the point where it meets others.
#pragma once

#include <span>
#include <vector>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// One of the two ends of an edge: twice its number, and 1 more for the end at `to`.
using EndNumber = std::uint32_t;

inline constexpr EndNumber kNoEnd = 0xFFFFFFFF;

// For each end of an edge the end at the same point with which a line goes on, or kNoEnd. Two ends
// at a point go on in one another. Of more, the two that make the straightest line do, then the
// straightest of the rest, and so on; where more than 64 edges meet, none. Depends on where the
// edges lie and not on their order.
std::vector<EndNumber> pairEnds(std::span<const PlanPoint> points, std::span<const Edge> edges);

}  // namespace dxf2d::linework
