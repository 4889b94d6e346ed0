// The lines along which faces pierce each other.
#pragma once

#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "projection/plan_cell.h"

namespace dxf2d::projection {

// Two triangles pierce each other if each has corners on both sides of the other's plane, further
// from it than their tolerances (touchOf), and if their intersection runs through the inside of
// both in plan. Triangles that share a side do not, nor do those that touch.
class PiercingLines {
 public:
  PiercingLines(const Scene& scene, const Tolerances& tolerances)
      : scene_(scene), tolerances_(tolerances) {}

  // Calls visit(line, part) for every such line in the cell, clipped to it; `part` is the lesser of
  // the two triangles' parts. The line belongs to no candidate edge.
  template <class Visit>
  void ForEach(const PlanCell& cell, Visit visit) {
    const auto numbers = cell.triangleNumbers;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      const PlanTriangle& a = cell.triangles[numbers[i]];
      for (std::size_t j = i + 1; j < numbers.size(); ++j) {
        const PlanTriangle& b = cell.triangles[numbers[j]];
        if (b.top <= a.bottom) {
          break;
        }
        if (!a.box.Overlaps(b.box) || !MayMeet(a, b, cell.rectangle) || ShareSide(a, b)) {
          continue;
        }
        if (const auto line = LineOf(a, b, cell.rectangle)) {
          visit(*line, std::min(scene_.parts[a.triangle], scene_.parts[b.triangle]));
        }
      }
    }
  }

  static constexpr Index kNoEdge = std::numeric_limits<Index>::max();

 private:
  // Whether the planes meet above the rectangle.
  static bool MayMeet(const PlanTriangle& a, const PlanTriangle& b, const Rectangle& rectangle) {
    const double x = rectangle.CenterX();
    const double y = rectangle.CenterY();
    const double dx = a.zx - b.zx;
    const double dy = a.zy - b.zy;
    const double reach = std::abs(dx) * (rectangle.x1 - x) + std::abs(dy) * (rectangle.y1 - y);
    return reach > 0 && std::abs(dx * x + dy * y + (a.z0 - b.z0)) <= reach;
  }

  static bool ShareSide(const PlanTriangle& a, const PlanTriangle& b) {
    int shared = 0;
    for (const Index corner : a.corners) {
      shared += corner == b.corners[0] || corner == b.corners[1] || corner == b.corners[2] ? 1 : 0;
    }
    return shared >= 2;
  }

  std::optional<PlanSegment> LineOf(const PlanTriangle& a, const PlanTriangle& b,
                                    const Rectangle& rectangle) const;
  bool Straddles(const PlanTriangle& a, const PlanTriangle& b) const;

  const Scene& scene_;
  Tolerances tolerances_;
};

}  // namespace dxf2d::projection
