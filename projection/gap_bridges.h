// Closes the gaps of a cut, so that what it encloses can be filled.
#pragma once

#include <span>
#include <vector>

#include "projection/segment_chains.h"

namespace dxf2d::projection {

// Segments that join the open ends of some polylines, given by number and all of one group, the
// nearest two first, but not the two of a straight line; none is longer than a quarter of the
// diagonal of their box. Empty if that leaves an end over: faces are missing then that nobody can
// guess. Square time in the number of ends; nothing is done for more than a few hundred.
std::vector<GroupedSegment> bridgesOverGaps(const Polylines& lines, std::span<const Index> numbers);

}  // namespace dxf2d::projection
