// Line sets that need no outline, being one already.
#pragma once

#include <vector>

#include "geometry/outline.h"

// True when BuildLineOutline would change nothing in a line set but make its points flat: when all
// points are finite and no two are at the same place in plan, and the runs are line strips (-6 or
// -1) that name points in ascending order, each once at most, but that a run of three or more may
// end where it began. Then
//   - the weld keeps every point and its number,
//   - the edges are distinct, have a length, and are in edge order as the runs give them,
//   - a run's chain begins with its first edge, and at each of its points one edge is left to
//     follow, the next; no edge of another run is there.
// Most line sets are like that. Of such a set the answer may yet be false, and is now and then for
// a very large one: places are told apart by hashes of them.
bool areGivenChains(const PlacedCoords& placed, const std::vector<int>& indices);
