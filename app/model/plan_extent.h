// How far the things of a model reach in plan.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "app/model/plan_placement.h"

namespace dxf2d {

struct PlanExtent {
  double minX = std::numeric_limits<double>::infinity();
  double minY = std::numeric_limits<double>::infinity();
  double maxX = -std::numeric_limits<double>::infinity();
  double maxY = -std::numeric_limits<double>::infinity();

  bool IsEmpty() const { return minX > maxX; }
  void Add(double x, double y) {
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
  }
  void Add(const PlanExtent& other);
  // The middle; not for an empty extent.
  std::array<double, 2> Center() const;
};

using PlanPoints = std::vector<std::array<double, 2>>;

// Gathers the points of a block whose extents, wherever the block is placed, are those of the whole
// block.
class HullPoints {
 public:
  // `anyTurn` false: all placements keep the axes (PlanPlacement::KeepsAxes), and four corners will
  // do. True: the convex hull.
  explicit HullPoints(bool anyTurn) : anyTurn_(anyTurn) {}

  // Adds the points of x, y, z triples that an index list names; its negative codes are passed
  // over.
  void Add(const std::vector<double>& coords, const std::vector<int>& indices);
  // The same of a list whose points are all named.
  void AddAll(const std::vector<double>& coords, const std::vector<int>& indices);
  // The points; none when nothing was added.
  PlanPoints Take();

 private:
  bool anyTurn_;
  PlanExtent box_;
  PlanPoints points_;
  // How many points are gathered before they are reduced to their hull, so that memory stays small.
  std::size_t room_ = 1u << 16;
};

// Widens `extent` by the points at their place.
void addPlaced(const PlanPoints& points, const PlanPlacement& placement, PlanExtent& extent);

}  // namespace dxf2d
