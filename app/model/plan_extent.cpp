#include "app/model/plan_extent.h"

#include <algorithm>
#include <utility>

namespace dxf2d {
namespace {

// Twice the area of the triangle a, b, c; above 0 when it runs counter-clockwise.
double turnOf(const std::array<double, 2>& a, const std::array<double, 2>& b,
              const std::array<double, 2>& c) {
  return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

// The convex hull, by Andrew's monotone chain: the lower side from left to right, the upper side
// back.
PlanPoints convexHull(PlanPoints points) {
  std::sort(points.begin(), points.end());
  points.erase(std::unique(points.begin(), points.end()), points.end());
  if (points.size() < 3) {
    return points;
  }
  PlanPoints hull;
  const auto addSide = [&hull](auto first, auto last) {
    const std::size_t start = hull.size();
    for (auto it = first; it != last; ++it) {
      while (hull.size() >= start + 2 && turnOf(hull[hull.size() - 2], hull.back(), *it) <= 0.0) {
        hull.pop_back();
      }
      hull.push_back(*it);
    }
    // The other side begins with it.
    hull.pop_back();
  };
  addSide(points.begin(), points.end());
  addSide(points.rbegin(), points.rend());
  return hull;
}

}  // namespace

void PlanExtent::Add(const PlanExtent& other) {
  minX = std::min(minX, other.minX);
  minY = std::min(minY, other.minY);
  maxX = std::max(maxX, other.maxX);
  maxY = std::max(maxY, other.maxY);
}

std::array<double, 2> PlanExtent::Center() const {
  // Halved first: the sum of two numbers may leave their range.
  return {minX / 2 + maxX / 2, minY / 2 + maxY / 2};
}

void HullPoints::Add(const std::vector<double>& coords, const std::vector<int>& indices) {
  const auto forEachPoint = [&](auto visit) {
    for (const int index : indices) {
      if (index < 0) {
        continue;
      }
      const double* point = &coords[3 * static_cast<std::size_t>(index)];
      visit(point[0], point[1]);
    }
  };
  if (!anyTurn_) {
    // A local box stays in registers.
    PlanExtent box = box_;
    forEachPoint([&box](double x, double y) { box.Add(x, y); });
    box_ = box;
    return;
  }
  forEachPoint([this](double x, double y) {
    points_.push_back({x, y});
    if (points_.size() < room_) {
      return;
    }
    points_ = convexHull(std::move(points_));
    room_ = std::max(room_, 2 * points_.size());
  });
}

void HullPoints::AddAll(const std::vector<double>& coords, const std::vector<int>& indices) {
  if (anyTurn_) {
    // A hull depends in its last digits on the order in which points come, and how often.
    Add(coords, indices);
    return;
  }
  PlanExtent box = box_;
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    box.Add(coords[i], coords[i + 1]);
  }
  box_ = box;
}

PlanPoints HullPoints::Take() {
  PlanPoints points = convexHull(std::move(points_));
  points_.clear();
  if (!box_.IsEmpty()) {
    points.insert(points.end(), {{box_.minX, box_.minY},
                                 {box_.maxX, box_.minY},
                                 {box_.maxX, box_.maxY},
                                 {box_.minX, box_.maxY}});
  }
  return points;
}

void addPlaced(const PlanPoints& points, const PlanPlacement& placement, PlanExtent& extent) {
  for (const auto& [x, y] : points) {
    extent.Add((x * placement.cosine - y * placement.sine) + placement.shift[0],
               (x * placement.sine + y * placement.cosine) + placement.shift[1]);
  }
}

}  // namespace dxf2d
