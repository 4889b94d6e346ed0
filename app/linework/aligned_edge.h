// Edges as seen along an axis near their direction.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// Directions, opposite ones being the same, fall into classes of one width in radians.
inline constexpr int kDirectionClasses = 256;
inline constexpr double kDirectionClassWidth = std::numbers::pi / kDirectionClasses;

// Edges shorter than this have no direction to speak of.
inline constexpr double kLeastTolerances = 8.0;

// Radians, 0 to pi.
inline double directionOf(PlanPoint vector) {
  const double angle = std::atan2(vector.y, vector.x);
  return angle < 0.0 ? angle + std::numbers::pi : angle;
}

inline int directionClassOf(double direction) {
  return std::clamp(static_cast<int>(direction / kDirectionClassWidth), 0, kDirectionClasses - 1);
}

// By class, the direction in its middle.
class ClassAxes {
 public:
  ClassAxes() {
    for (int i = 0; i < kDirectionClasses; ++i) {
      const double angle = (i + 0.5) * kDirectionClassWidth;
      axes_[static_cast<std::size_t>(i)] = {std::cos(angle), std::sin(angle)};
    }
  }
  PlanPoint operator[](int number) const { return axes_[static_cast<std::size_t>(number)]; }

 private:
  std::array<PlanPoint, kDirectionClasses> axes_;
};

// Levels are powers of 4 of the length, counted from the shortest edge that takes part: enough for
// edges a millionth to all of the extent.
inline constexpr int kLengthLevels = 32;

// The level of an edge that is `size` times as long as that edge.
inline int lengthLevelOf(double size) {
  // As std::ilogb, which is a call.
  constexpr int kMantissaBits = 52;
  constexpr int kExponentOfOne = 1023;
  const int octaves =
      static_cast<int>(std::bit_cast<std::uint64_t>(size) >> kMantissaBits) - kExponentOfOne;
  return std::min(octaves / 2, kLengthLevels - 1);
}

// Columns across the axis are up to four times as wide as the edges of their level are long.
inline double columnWidthOf(int level, double tolerance) {
  return std::ldexp(kLeastTolerances * tolerance, 2 * level + 2);
}

// As std::floor, which is a call on processors as old as those that this is built for.
inline std::int64_t cellOf(double value, double size) {
  const double cells = value / size;
  const auto whole = static_cast<std::int64_t>(cells);
  return static_cast<double>(whole) > cells ? whole - 1 : whole;
}

// An edge as seen along an axis that it is not at right angles to.
class AlignedEdge {
 public:
  AlignedEdge(PlanPoint from, PlanPoint vector, PlanPoint axis)
      : along_(dot(axis, from)),
        across_(cross(axis, from)),
        length_(dot(axis, vector)),
        rise_(cross(axis, vector)),
        slope_(rise_ / length_) {}

  // Along the axis.
  double Low() const { return std::min(along_, along_ + length_); }
  double High() const { return std::max(along_, along_ + length_); }
  double Middle() const { return along_ + length_ / 2.0; }
  // Across the axis.
  double Bottom() const { return std::min(across_, across_ + rise_); }
  double Top() const { return std::max(across_, across_ + rise_); }
  // Where the edge's line passes.
  double AcrossAt(double along) const { return across_ + slope_ * (along - along_); }
  double AcrossColumn(std::int64_t column, double width) const {
    return AcrossAt((static_cast<double>(column) + 0.5) * width);
  }

 private:
  double along_;
  double across_;
  double length_;
  double rise_;
  double slope_;
};

// How high a step of the passages through the middle of a column is.
inline constexpr double kStepTolerances = 64.0;

}  // namespace dxf2d::linework
