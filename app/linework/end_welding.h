// Makes one point of the ends of segments that meet.
#pragma once

#include <span>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// The graph of the segments whose ends stand in pairs in `ends`. A point that lies within `radius`
// of an earlier one is that one; of several the nearest. Segments between a point and itself go,
// the others keep their order. `radius` is above 0 and not much less than a millionth of the
// coordinates' extent; points are then further apart than it.
Graph weldEnds(std::span<const PlanPoint> ends, double radius);

}  // namespace dxf2d::linework
