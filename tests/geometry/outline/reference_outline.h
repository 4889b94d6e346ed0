// The reference implementation of the outline: simple and slow, to compare BuildOutline and
// BuildLineOutline with.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

namespace dxf2d {

// As BuildOutline and BuildLineOutline (geometry/outline/outline.h), with ordered trees, linear
// searches and a chaining that looks through all edges again after each step.
bool referenceOutline(std::vector<KtPoint3>& points, std::vector<int>& indices,
                      bool reverseOrientation, bool closedSurface);
bool referenceLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices);

}  // namespace dxf2d
