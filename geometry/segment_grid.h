// Finds segments that lie, within a tolerance, where another does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

// A segment in plan.
struct PlanSegment {
  double x1;
  double y1;
  double x2;
  double y2;
};

// Coordinates that differ by no more than this, in drawing units, are the same.
inline constexpr double kSegmentTolerance = 0.0001;

// True when `a` and `b` agree in every coordinate, in the same direction or reversed.
bool coincide(const PlanSegment& a, const PlanSegment& b);

// The segments kept so far, in cells by their first end, so that only a handful are compared.
class SegmentGrid {
 public:
  // Keeps `segment` and answers true, unless it coincides with one that is kept. Coordinates are
  // finite.
  bool KeepIfNew(const PlanSegment& segment);

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
