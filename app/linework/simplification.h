// Leaves out points that a line does not need.
#pragma once

#include <span>
#include <vector>

#include "app/drawing/drawing.h"

namespace dxf2d::linework {

// The polyline without points that lie within `tolerance` of what is left, by the algorithm of
// Ramer, Douglas and Peucker. The ends stay; of a closed one the first point and the one farthest
// from it. What is simplified stays as it is when simplified again.
std::vector<PlanPoint> simplify(std::span<const PlanPoint> points, bool closed, double tolerance);

}  // namespace dxf2d::linework
