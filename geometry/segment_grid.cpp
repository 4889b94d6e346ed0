#include "geometry/segment_grid.h"

#include <cassert>
#include <cmath>

#include "geometry/outline/point_index.h"

namespace dxf2d {

namespace {

// Larger than the tolerance by more than any rounding error, so that points within the tolerance of
// a point are in its cell or in one of the eight around it.
constexpr double kCellSize = 4 * kSegmentTolerance;

bool near(double a, double b) { return std::fabs(a - b) <= kSegmentTolerance; }

}  // namespace

bool coincide(const PlanSegment& a, const PlanSegment& b) {
  return (near(a.x1, b.x1) && near(a.y1, b.y1) && near(a.x2, b.x2) && near(a.y2, b.y2)) ||
         (near(a.x1, b.x2) && near(a.y1, b.y2) && near(a.x2, b.x1) && near(a.y2, b.y1));
}

std::size_t SegmentGrid::CellHash::operator()(const Cell& cell) const {
  return PointIndex::Hash(cell.column, cell.row);
}

SegmentGrid::Cell SegmentGrid::CellOf(double x, double y) {
  // Far from the origin neighboring numbers are farther apart than a cell, so each is in a cell of
  // its own. The steps to adjacent cells then have no effect, and none is needed.
  return {std::floor(x / kCellSize), std::floor(y / kCellSize)};
}

bool SegmentGrid::HasCoincidentNear(double x, double y, const PlanSegment& segment) const {
  const Cell middle = CellOf(x, y);
  for (const double column : {middle.column - 1, middle.column, middle.column + 1}) {
    for (const double row : {middle.row - 1, middle.row, middle.row + 1}) {
      const auto found = cells_.find({column, row});
      if (found == cells_.end()) {
        continue;
      }
      for (const std::uint32_t stored : found->second) {
        if (coincide(segments_[stored], segment)) {
          return true;
        }
      }
    }
  }
  return false;
}

bool SegmentGrid::InsertIfAbsent(const PlanSegment& segment) {
  assert(std::isfinite(segment.x1) && std::isfinite(segment.y1) && std::isfinite(segment.x2) &&
         std::isfinite(segment.y2));
  if (HasCoincidentNear(segment.x1, segment.y1, segment) ||
      HasCoincidentNear(segment.x2, segment.y2, segment)) {
    return false;
  }
  cells_[CellOf(segment.x1, segment.y1)].push_back(static_cast<std::uint32_t>(segments_.size()));
  segments_.push_back(segment);
  return true;
}

}  // namespace dxf2d
