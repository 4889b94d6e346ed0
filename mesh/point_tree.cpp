#include "mesh/point_tree.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace dxf2d::mesh {

namespace {

std::size_t widestAxis(const std::vector<Point>& points, const Index* begin, const Index* end) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  Point least = {kInfinity, kInfinity, kInfinity};
  Point greatest = {-kInfinity, -kInfinity, -kInfinity};
  for (const Index* number = begin; number != end; ++number) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      least[axis] = std::min(least[axis], points[*number][axis]);
      greatest[axis] = std::max(greatest[axis], points[*number][axis]);
    }
  }
  const Vector extent = difference(greatest, least);
  return static_cast<std::size_t>(std::max_element(extent.begin(), extent.end()) - extent.begin());
}

}  // namespace

PointTree::PointTree(const std::vector<Point>& points, std::vector<Index> numbers)
    : points_(points), numbers_(std::move(numbers)), axes_(numbers_.size(), 0) {
  std::vector<std::pair<Index, Index>> ranges = {{0, static_cast<Index>(numbers_.size())}};
  while (!ranges.empty()) {
    const auto [begin, end] = ranges.back();
    ranges.pop_back();
    if (end - begin <= kLeafSize) {
      continue;
    }
    const Index middle = begin + (end - begin) / 2;
    const std::size_t axis = widestAxis(points_, &numbers_[begin], numbers_.data() + end);
    axes_[middle] = static_cast<unsigned char>(axis);
    std::nth_element(numbers_.begin() + begin, numbers_.begin() + middle, numbers_.begin() + end,
                     [&](Index a, Index b) { return points_[a][axis] < points_[b][axis]; });
    ranges.emplace_back(begin, middle);
    ranges.emplace_back(middle + 1, end);
  }
}

void PointTree::Split(const Task& task, const Point& from, const Vector& along,
                      double distance) const {
  const Index middle = task.begin + (task.end - task.begin) / 2;
  const std::size_t axis = axes_[middle];
  // A little more than the distance, to be safe from rounding.
  const double margin = distance * 1.01;
  const double plane = points_[numbers_[middle]][axis] - from[axis];
  const double slope = along[axis];
  // Parameters at which the segment crosses into reach of the lower and of the upper side.
  Task lower = {task.begin, middle, task.enter, task.leave};
  Task upper = {middle + 1, task.end, task.enter, task.leave};
  if (slope > 0.0) {
    lower.leave = std::min(lower.leave, (plane + margin) / slope);
    upper.enter = std::max(upper.enter, (plane - margin) / slope);
  } else if (slope < 0.0) {
    lower.enter = std::max(lower.enter, (plane + margin) / slope);
    upper.leave = std::min(upper.leave, (plane - margin) / slope);
  } else {
    lower.leave = 0.0 <= plane + margin ? lower.leave : -1.0;
    upper.leave = 0.0 >= plane - margin ? upper.leave : -1.0;
  }
  // Rounding of a parameter is far below this.
  constexpr double kSlack = 1e-9;
  for (const Task& side : {lower, upper}) {
    if (side.enter <= side.leave + kSlack) {
      stack_.push_back(side);
    }
  }
}

}  // namespace dxf2d::mesh
