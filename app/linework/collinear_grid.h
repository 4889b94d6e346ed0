// Finds segments that run along one another.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "app/linework/aligned_edge.h"
#include "app/linework/cell_matching.h"
#include "app/linework/edges.h"

namespace dxf2d::linework {

// A square grid over the plan.
class Tiles {
 public:
  // `points` are counted from the first of them.
  Tiles(std::span<const PlanPoint> points, std::size_t edges);

  unsigned Bits() const { return 2 * sideBits_; }

  std::uint64_t NumberOf(PlanPoint point) const {
    return static_cast<std::uint64_t>(IndexOf(point.y - low_.y)) << sideBits_ |
           static_cast<std::uint64_t>(IndexOf(point.x - low_.x));
  }

 private:
  double Side() const { return static_cast<double>(std::uint64_t{1} << sideBits_); }
  std::int64_t IndexOf(double distance) const {
    return static_cast<std::int64_t>(std::clamp(distance * scale_, 0.0, Side() - 1.0));
  }

  unsigned sideBits_;
  PlanPoint low_;
  // Tiles for one unit of length.
  double scale_;
};

// Edges of a graph, sorted into narrow classes of directions, and in each by length into levels. A
// level has columns as wide as its edges are long. In a column, edges are found
// - by an edge that is not much shorter, by where their lines pass the middle of the column: only
//   lines that are nearly the same agree in that;
// - by a much shorter one, whose own line is too vague for that, by rows a 64th as high.
//
// Most cells hold a single edge. Counts tell which, so that few cells are ever listed.
class CollinearGrid {
 public:
  // Refers to all of them. At least one point.
  CollinearGrid(const Graph& graph, std::span<const EdgeNumber> edges, double tolerance);

  // Calls visit(shorter, longer) for every two of the edges that may overlap on one line, and for
  // some others; for a pair possibly more than once. Two edges overlap when both ends of the
  // shorter lie within the tolerance of the line through the longer. Edges shorter than
  // kLeastTolerances are left out.
  void ForEachPair(const std::function<void(EdgeNumber, EdgeNumber)>& visit);

  // The edges that have at least two others of one class and level on their line near them, and
  // some others, in order.
  std::vector<EdgeNumber> CrowdedEdges() const;

 private:
  enum class Found : std::uint8_t { kByLine, kByRow };

  struct Place {
    double length;
    double direction;
    int classNumber;
    // Below 0 where the edge is too short to take part.
    int level;
  };
  struct Level {
    int classNumber;
    int number;
    // Of its columns.
    double width;
  };
  // A cell of an edge's own class and level.
  struct OwnCell {
    static constexpr std::uint32_t kMostPlace = 0x3FFFFFFF;
    std::uint32_t cell;
    std::uint32_t place : 30;
    // Whether the edge is found in it.
    std::uint32_t isEntry : 1;
    // Whether the edge looks for others in it.
    std::uint32_t isQuery : 1;
  };

  void AddPlace(EdgeNumber edge);
  void AddOwnCells(std::uint32_t place);
  AlignedEdge Align(std::uint32_t place, int classNumber) const;
  double ReachOf(const Place& queried, const Level& level) const;
  std::uint32_t CellOf(Found found, const Level& level, std::int64_t column, std::int64_t row,
                       double rowHeight) const;
  template <typename Visit>
  void ForEachLineCell(const AlignedEdge& edge, const Level& level, double reach,
                       const Visit& visit) const;
  template <typename Visit>
  void ForEachRowCell(const AlignedEdge& edge, const Level& level, double margin,
                      const Visit& visit) const;
  template <typename Visit>
  void ForEachRowEntry(const Visit& visit) const;
  void Query(std::uint32_t place, std::uint32_t cell, unsigned alone);
  void QueryOthers(std::uint32_t place);
  void QueryLevel(std::uint32_t place, const Level& level);
  void ListEntries();

  const Graph& graph_;
  std::span<const EdgeNumber> edges_;
  double tolerance_;
  Tiles tiles_;
  ClassAxes axes_;
  // By level, how wide columns are.
  std::array<double, kLengthLevels> widths_{};
  // Of each of `edges_`; entries and queries hold its place there.
  std::vector<Place> places_;
  int lowestLevel_ = kLengthLevels;
  // The levels at which a class has edges, a bit each.
  std::array<std::uint32_t, kDirectionClasses> levels_{};
  // In the order of their places.
  std::vector<OwnCell> ownCells_;
  CellCounts counts_;
  // The cells in which edges are looked for.
  CellCounts queried_;
  std::vector<CellEntry> entries_;
  std::vector<CellEntry> queries_;
};

}  // namespace dxf2d::linework
