// The rows and columns of a grid.
#pragma once

#include <algorithm>
#include <cstddef>

#include "projection/plan_cell.h"

namespace dxf2d::projection {

// Which of `count` cells between `low` and `high` has the value; the first or the last for one
// beyond.
inline std::size_t cellOf(double value, double low, double high, std::size_t count) {
  if (!(low < high)) {
    return 0;
  }
  const double cell = (value - low) / (high - low) * static_cast<double>(count);
  const double last = static_cast<double>(count - 1);
  return static_cast<std::size_t>(std::clamp(cell, 0.0, last));
}

// Where cell `cell` of `count` between `low` and `high` begins.
inline double lineOf(std::size_t cell, double low, double high, std::size_t count) {
  if (cell == count) {
    return high;
  }
  return low + static_cast<double>(cell) * ((high - low) / static_cast<double>(count));
}

// Calls visit(column, row, part) for every cell of the grid that the interval `reach` of the
// segment comes within `slack` of; `part` is the interval in that cell.
template <class Visit>
void forEachCellOnSegment(const PlanSegment& segment, const Interval& reach,
                          const Rectangle& extent, std::size_t columns, std::size_t rows,
                          double slack, Visit visit) {
  const double y0 = segment.YAt(reach.from);
  const double y1 = segment.YAt(reach.to);
  const std::size_t lastRow = cellOf(std::max(y0, y1) + slack, extent.y0, extent.y1, rows);
  for (std::size_t row = cellOf(std::min(y0, y1) - slack, extent.y0, extent.y1, rows);
       row <= lastRow; ++row) {
    Interval inRow = reach;
    clipToSlab(segment.y, segment.dy, lineOf(row, extent.y0, extent.y1, rows) - slack,
               lineOf(row + 1, extent.y0, extent.y1, rows) + slack, inRow);
    if (!(inRow.from <= inRow.to)) {
      continue;
    }
    const double x0 = segment.XAt(inRow.from);
    const double x1 = segment.XAt(inRow.to);
    const std::size_t last = cellOf(std::max(x0, x1) + slack, extent.x0, extent.x1, columns);
    for (std::size_t column = cellOf(std::min(x0, x1) - slack, extent.x0, extent.x1, columns);
         column <= last; ++column) {
      Interval inCell = inRow;
      clipToSlab(segment.x, segment.dx, lineOf(column, extent.x0, extent.x1, columns) - slack,
                 lineOf(column + 1, extent.x0, extent.x1, columns) + slack, inCell);
      if (inCell.from <= inCell.to) {
        visit(column, row, inCell);
      }
    }
  }
}

}  // namespace dxf2d::projection
