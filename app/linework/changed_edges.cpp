#include "app/linework/changed_edges.h"

#include <algorithm>
#include <cmath>

#include "app/drawing/plan_extents.h"

namespace dxf2d::linework {

namespace {

// Marks on a grid over all points. What covers many cells is not looked at in detail.
class MarkedCells {
 public:
  MarkedCells(std::span<const PlanPoint> points, double margin) : margin_(margin) {
    PlanExtents extents;
    for (const PlanPoint point : points) {
      extents.Add(point);
    }
    low_ = extents.Low();
    const PlanPoint size = extents.High() - low_;
    scale_ = kSide / std::max({size.x, size.y, margin});
    marks_.assign(static_cast<std::size_t>(kSide) * kSide, false);
  }

  void Mark(PlanPoint a, PlanPoint b) {
    ForEachCell(CellsOf(a, b), [this](std::size_t cell) {
      marks_[cell] = true;
      return false;
    });
  }

  bool IsNearMark(PlanPoint a, PlanPoint b) const {
    const Cells cells = CellsOf(a, b);
    constexpr int kMostCells = 256;
    if ((cells.lastColumn - cells.column + 1) * (cells.lastRow - cells.row + 1) > kMostCells) {
      return true;
    }
    return ForEachCell(cells, [this](std::size_t cell) { return marks_[cell]; });
  }

 private:
  static constexpr int kSide = 1024;

  struct Cells {
    int column;
    int lastColumn;
    int row;
    int lastRow;
  };

  int IndexOf(double distance) const {
    return std::clamp(static_cast<int>(std::floor(distance * scale_)), 0, kSide - 1);
  }

  // Those that the rectangle around a segment touches, the margin around it.
  Cells CellsOf(PlanPoint a, PlanPoint b) const {
    const auto [left, right] = std::minmax({a.x - low_.x, b.x - low_.x});
    const auto [bottom, top] = std::minmax({a.y - low_.y, b.y - low_.y});
    return {IndexOf(left - margin_), IndexOf(right + margin_), IndexOf(bottom - margin_),
            IndexOf(top + margin_)};
  }

  // Stops when visit(cell) returns true, and returns whether it did.
  template <typename Visit>
  static bool ForEachCell(const Cells& cells, const Visit& visit) {
    for (int row = cells.row; row <= cells.lastRow; ++row) {
      for (int column = cells.column; column <= cells.lastColumn; ++column) {
        if (visit(static_cast<std::size_t>(row) * kSide + static_cast<std::size_t>(column))) {
          return true;
        }
      }
    }
    return false;
  }

  double margin_;
  PlanPoint low_;
  // Cells for one unit of length.
  double scale_ = 0.0;
  std::vector<bool> marks_;
};

}  // namespace

std::vector<EdgeNumber> edgesNearChanges(const Graph& graph, std::span<const std::uint8_t> changed,
                                         double tolerance) {
  // Both edges of a pair get the margin.
  MarkedCells cells(graph.points, tolerance);
  // A rectangle of cells for each is too much where many edges are long.
  constexpr std::size_t kMostMarked = 4096;
  const auto count = static_cast<std::size_t>(std::ranges::count(changed, 1));
  std::vector<EdgeNumber> near;
  for (EdgeNumber i = 0; count <= kMostMarked && i < graph.edges.size(); ++i) {
    if (changed[i] != 0) {
      cells.Mark(graph.points[graph.edges[i].from], graph.points[graph.edges[i].to]);
    }
  }
  for (EdgeNumber i = 0; i < graph.edges.size(); ++i) {
    const Edge edge = graph.edges[i];
    if (count > kMostMarked || cells.IsNearMark(graph.points[edge.from], graph.points[edge.to])) {
      near.push_back(i);
    }
  }
  return near;
}

}  // namespace dxf2d::linework
