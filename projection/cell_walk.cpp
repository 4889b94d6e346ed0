#include "projection/cell_walk.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "projection/grid_lines.h"
#include "projection/plan_triangle.h"

namespace dxf2d::projection {
namespace {

// Cells with no more triangles and parts than this are leaves.
constexpr std::size_t kFewItems = 48;
constexpr double kItemsPerCell = 16;
constexpr std::size_t kMostCellsASide = 8;
constexpr int kMostLevels = 7;
// A division that leaves more than this share of everything in the average cell is not worth it.
constexpr double kMostShare = 0.4;
constexpr double kMostShareOfFour = 0.75;
// Cells are not made narrower than this many plan tolerances.
constexpr double kLeastWidth = 256;

}  // namespace

void CellWalk::Run(std::size_t block, const std::function<void(const PlanCell&)>& visit) {
  visit_ = &visit;
  LoadBlock(block);
  Task task{grid_.BlockRectangle(block % grid_.columns_, block / grid_.columns_),
            -std::numeric_limits<double>::infinity(),
            0,
            0,
            0,
            partStack_.size(),
            0};
  for (std::size_t i = 0; i < triangles_.size(); ++i) {
    if (IsSeenIn(triangles_[i], task.rectangle, task.cover)) {
      triangleStack_.push_back(static_cast<Index>(i));
    }
  }
  task.triangleEnd = triangleStack_.size();
  Process(task);
}

void CellWalk::LoadBlock(std::size_t block) {
  triangles_.clear();
  for (std::size_t i = grid_.triangleStarts_[block]; i < grid_.triangleStarts_[block + 1]; ++i) {
    triangles_.push_back(makePlanTriangle(grid_.scene_, grid_.triangleItems_[i], grid_.middleX_,
                                          grid_.middleY_, grid_.tolerances_.touch));
  }
  std::ranges::sort(triangles_, standsBefore);
  triangles_.erase(std::unique(triangles_.begin(), triangles_.end(), areTwins), triangles_.end());
  triangleStack_.clear();

  segments_.clear();
  partStack_.clear();
  const Rectangle box = grid_.BlockRectangle(block % grid_.columns_, block / grid_.columns_);
  const double slack = grid_.tolerances_.plan;
  for (std::size_t i = grid_.edgeStarts_[block]; i < grid_.edgeStarts_[block + 1]; ++i) {
    const PlanSegment segment = grid_.SegmentOf(grid_.edgeItems_[i]);
    SegmentPart part{static_cast<Index>(segments_.size()), {0, 1}, {0, 1}};
    clipToSlab(segment.x, segment.dx, box.x0, box.x1, part.own);
    clipToSlab(segment.y, segment.dy, box.y0, box.y1, part.own);
    clipToSlab(segment.x, segment.dx, box.x0 - slack, box.x1 + slack, part.reach);
    clipToSlab(segment.y, segment.dy, box.y0 - slack, box.y1 + slack, part.reach);
    segments_.push_back(segment);
    partStack_.push_back(part);
  }
}

// Adds a triangle, given in order, to what is seen in a rectangle so far. Only what is above
// `cover` can be seen in it.
bool CellWalk::IsSeenIn(const PlanTriangle& triangle, const Rectangle& rectangle,
                        double& cover) const {
  if (triangle.top <= cover) {
    return false;
  }
  const Overlap overlap = overlapOf(triangle, rectangle, grid_.tolerances_.plan);
  if (overlap == Overlap::kNone) {
    return false;
  }
  const Interval heights = heightsOver(triangle, rectangle);
  if (overlap == Overlap::kCovers) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    cover =
        culling_ == Culling::kInside ? kInfinity : std::max(cover, heights.from - triangle.touch);
  }
  return heights.to > cover;
}

// Leaves out the triangles that were taken in before it was known that others cover them.
void CellWalk::Cull(Task& task) {
  std::size_t end = task.triangleBegin;
  for (std::size_t i = task.triangleBegin; i < task.triangleEnd; ++i) {
    const Index number = triangleStack_[i];
    if (heightsOver(triangles_[number], task.rectangle).to > task.cover) {
      triangleStack_[end++] = number;
    }
  }
  task.triangleEnd = end;
}

// The children of a cell, in rows, while their lists are made.
struct CellWalk::Division {
  std::size_t side;
  std::vector<std::pair<Index, Index>> triangles;    // child, triangle
  std::vector<std::pair<Index, SegmentPart>> parts;  // child, part
  std::vector<std::size_t> triangleStarts;
  std::vector<std::size_t> partStarts;

  std::vector<Rectangle> rectangles;
  std::vector<double> covers;

  Division(const Rectangle& parent, std::size_t side_) : side(side_) {
    for (std::size_t row = 0; row < side; ++row) {
      for (std::size_t column = 0; column < side; ++column) {
        rectangles.push_back({lineOf(column, parent.x0, parent.x1, side),
                              lineOf(row, parent.y0, parent.y1, side),
                              lineOf(column + 1, parent.x0, parent.x1, side),
                              lineOf(row + 1, parent.y0, parent.y1, side)});
      }
    }
    covers.assign(rectangles.size(), -std::numeric_limits<double>::infinity());
  }
};

void CellWalk::ShareOutTriangles(const Task& task, Division& division) {
  const Rectangle& box = task.rectangle;
  const double slack = 2 * grid_.tolerances_.plan;
  const std::size_t side = division.side;
  for (std::size_t i = task.triangleBegin; i < task.triangleEnd; ++i) {
    const Index number = triangleStack_[i];
    const Rectangle& reach = triangles_[number].box;
    const std::size_t firstColumn = cellOf(reach.x0 - slack, box.x0, box.x1, side);
    const std::size_t lastColumn = cellOf(reach.x1 + slack, box.x0, box.x1, side);
    const std::size_t lastRow = cellOf(reach.y1 + slack, box.y0, box.y1, side);
    for (std::size_t row = cellOf(reach.y0 - slack, box.y0, box.y1, side); row <= lastRow; ++row) {
      for (std::size_t column = firstColumn; column <= lastColumn; ++column) {
        const std::size_t child = row * side + column;
        if (IsSeenIn(triangles_[number], division.rectangles[child], division.covers[child])) {
          division.triangles.emplace_back(static_cast<Index>(child), number);
        }
      }
    }
  }
}

void CellWalk::ShareOutParts(const Task& task, Division& division) {
  const double slack = grid_.tolerances_.plan;
  for (std::size_t i = task.partBegin; i < task.partEnd; ++i) {
    const SegmentPart part = partStack_[i];
    const PlanSegment& segment = segments_[part.segment];
    forEachCellOnSegment(
        segment, part.reach, task.rectangle, division.side, division.side, slack,
        [&](std::size_t column, std::size_t row, const Interval& reach) {
          const std::size_t child = row * division.side + column;
          if (std::max(segment.ZAt(reach.from), segment.ZAt(reach.to)) < division.covers[child]) {
            return;
          }
          const Rectangle& box = division.rectangles[child];
          SegmentPart piece{part.segment, part.own, reach};
          clipToSlab(segment.x, segment.dx, box.x0, box.x1, piece.own);
          clipToSlab(segment.y, segment.dy, box.y0, box.y1, piece.own);
          division.parts.emplace_back(static_cast<Index>(child), piece);
        });
  }
}

namespace {

// Appends to `stack` the items by child, in the order given, and returns where each child's begin.
template <class Item>
std::vector<std::size_t> sortByChild(const std::vector<std::pair<Index, Item>>& items,
                                     std::size_t children, std::vector<Item>& stack) {
  std::vector<std::size_t> starts(children + 2, 0);
  for (const auto& item : items) {
    ++starts[item.first + 2];
  }
  starts[1] = stack.size();
  starts[0] = stack.size();
  for (std::size_t i = 2; i < starts.size(); ++i) {
    starts[i] += starts[i - 1];
  }
  stack.resize(stack.size() + items.size());
  for (const auto& item : items) {
    stack[starts[item.first + 1]++] = item.second;
  }
  return starts;
}

}  // namespace

// Processes the cell as smaller ones; false if that would gain nothing.
bool CellWalk::Divide(const Task& task) {
  const std::size_t triangleCount = task.triangleEnd - task.triangleBegin;
  const std::size_t partCount = task.partEnd - task.partBegin;
  const double width =
      std::min(task.rectangle.x1 - task.rectangle.x0, task.rectangle.y1 - task.rectangle.y0);
  if ((triangleCount <= kFewItems && partCount <= kFewItems) || task.level == kMostLevels ||
      width < kLeastWidth * grid_.tolerances_.plan) {
    return false;
  }
  const auto most = static_cast<double>(std::max(triangleCount, partCount));
  Division division(task.rectangle,
                    std::clamp(static_cast<std::size_t>(std::sqrt(most / kItemsPerCell)) + 1,
                               std::size_t{2}, kMostCellsASide));
  ShareOutTriangles(task, division);
  ShareOutParts(task, division);
  const std::size_t children = division.side * division.side;
  const auto entries = static_cast<double>(division.triangles.size() + division.parts.size());
  const auto items = static_cast<double>(triangleCount + partCount);
  const double mostShare = children > 4 ? kMostShare : kMostShareOfFour;
  if (entries > mostShare * static_cast<double>(children) * items) {
    return false;
  }
  const std::size_t triangleTop = triangleStack_.size();
  const std::size_t partTop = partStack_.size();
  division.triangleStarts = sortByChild(division.triangles, children, triangleStack_);
  division.partStarts = sortByChild(division.parts, children, partStack_);
  for (std::size_t child = 0; child < children; ++child) {
    Process({division.rectangles[child], division.covers[child], division.triangleStarts[child],
             division.triangleStarts[child + 1], division.partStarts[child],
             division.partStarts[child + 1], task.level + 1});
  }
  triangleStack_.resize(triangleTop);
  partStack_.resize(partTop);
  return true;
}

void CellWalk::Process(Task task) {
  Cull(task);
  if (task.triangleBegin == task.triangleEnd && task.partBegin == task.partEnd) {
    return;
  }
  if (!Divide(task)) {
    Visit(task);
  }
}

void CellWalk::Visit(const Task& task) {
  (*visit_)(
      {task.rectangle, triangles_,
       std::span(triangleStack_).subspan(task.triangleBegin, task.triangleEnd - task.triangleBegin),
       segments_, std::span(partStack_).subspan(task.partBegin, task.partEnd - task.partBegin),
       grid_.middleX_, grid_.middleY_});
}

}  // namespace dxf2d::projection
