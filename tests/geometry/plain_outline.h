// The outline rules written down plainly, without a thought for speed, to compare BuildOutline and
// BuildLineOutline with.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

// As BuildOutline and BuildLineOutline (geometry/outline.h), with ordered trees, linear searches
// and a chaining that looks through all edges again after each step.
bool plainOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface);
bool plainLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices);
