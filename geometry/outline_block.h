// Draws a face or line set as the outline that a plan of it shows.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

// Face-set callback, slot 10. `coords` are x, y, z triples (a remainder is ignored), `indices` runs
// closed by codes (geometry/index_codes.h). Writes a block under the current node's name and
// answers true; true also when the set has no outline, and then writes nothing. False without an
// open file or a current node, or when either list is empty.
bool faceSetCallback(const std::vector<double>& coords, const std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface);
