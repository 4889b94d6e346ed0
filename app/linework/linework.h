// Joins the segments of a line drawing into polylines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "app/drawing/drawing.h"

namespace dxf2d::linework {

// Polylines, all in one list of points.
struct Paths {
  std::vector<PlanPoint> points;
  // Where each polyline ends in `points`.
  std::vector<std::size_t> ends;
  // For each, whether it goes from its last point back to the first, which is then not repeated.
  std::vector<std::uint8_t> closed;

  std::size_t size() const { return ends.size(); }
  std::span<const PlanPoint> operator[](std::size_t i) const {
    const std::size_t begin = i == 0 ? 0 : ends[i - 1];
    return std::span(points).subspan(begin, ends[i] - begin);
  }
};

// Joins the segments whose ends stand in pairs in `ends`; coordinates are finite.
//
// 1. Ends within 1.5 `tolerance` of one another meet, segments without length go.  end_welding.h
// 2. Of segments that lie on one another, wholly or in part, one is left; of
//    many first a few.                                  overlap_removal.h, crowd_thinning.h
// 3. What meets goes on in one another, at crossings straight through.         edge_pairing.h
// 4. Segments in a row are one polyline, rings are closed.                     path_chaining.h
//
// A segment that is cut bends a little, and what overlaps it may not be what did before: where
// something was cut, steps 2 to 4 are repeated around it until nothing changes.
//
// `tolerance` is above 0 and not below a ten-millionth of the extent.
Paths joinSegments(std::vector<PlanPoint> ends, double tolerance);

// The tolerance for segments with these ends: a millionth of the longer side of their extent. 0
// when they have none, or when it is so small or large that squares of coordinates have no place in
// a double; there is nothing to join then.
double joinTolerance(const std::vector<PlanPoint>& ends);

}  // namespace dxf2d::linework
