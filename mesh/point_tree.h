// Finds points near a line segment.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "mesh/vector.h"

namespace dxf2d::mesh {

// A balanced k-d tree in one list: the middle of each range stands between the points below it and
// those above it along the axis of the range's widest extent, so a search takes time logarithmic in
// the points that it does not find, however they lie.
class PointTree {
 public:
  // `numbers` name points of `points`, which outlive the tree.
  PointTree(const std::vector<Point>& points, std::vector<Index> numbers);

  // Calls visit(number) for every point in the tree that may lie within `distance` of the segment
  // from `from` to `to`, and some others.
  template <class Visit>
  void VisitNear(const Point& from, const Point& to, double distance, Visit visit) const {
    const Vector along = difference(to, from);
    std::vector<Task>& stack = stack_;
    stack.assign(1, {0, static_cast<Index>(numbers_.size()), 0.0, 1.0});
    while (!stack.empty()) {
      const Task task = stack.back();
      stack.pop_back();
      if (task.end - task.begin <= kLeafSize) {
        for (Index i = task.begin; i < task.end; ++i) {
          visit(numbers_[i]);
        }
        continue;
      }
      visit(numbers_[task.begin + (task.end - task.begin) / 2]);
      Split(task, from, along, distance);
    }
  }

 private:
  static constexpr Index kLeafSize = 8;

  // A range of the list, and the part of the segment that passes near it, from 0 to 1.
  struct Task {
    Index begin;
    Index end;
    double enter;
    double leave;
  };

  void Split(const Task& task, const Point& from, const Vector& along, double distance) const;

  const std::vector<Point>& points_;
  std::vector<Index> numbers_;
  // By position of the middle of a range: the axis that splits it.
  std::vector<unsigned char> axes_;
  mutable std::vector<Task> stack_;
};

}  // namespace dxf2d::mesh
