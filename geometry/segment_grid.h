// Finds segments that coincide within a tolerance.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace dxf2d {

// A segment in plan.
struct PlanSegment {
  double x1;
  double y1;
  double x2;
  double y2;
};

// Coordinates that differ by no more than this, in drawing units, count as equal.
inline constexpr double kSegmentTolerance = 0.0001;

// Returns whether `a` and `b` agree in every coordinate, in the same direction or reversed.
bool coincide(const PlanSegment& a, const PlanSegment& b);

// A set of segments, in grid cells by their first end, so that only a few are compared.
class SegmentGrid {
 public:
  // Inserts `segment` and returns true, unless it coincides with a segment in the set. Its
  // coordinates must be finite.
  bool InsertIfAbsent(const PlanSegment& segment);

 private:
  struct Cell {
    double column;
    double row;
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  struct CellHash {
    std::size_t operator()(const Cell& cell) const;
  };

  static Cell CellOf(double x, double y);
  bool HasCoincidentNear(double x, double y, const PlanSegment& segment) const;

  std::vector<PlanSegment> segments_;
  std::unordered_map<Cell, std::vector<std::uint32_t>, CellHash> cells_;
};

}  // namespace dxf2d
