#include "app/linework/collinear_grid.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

#include "app/drawing/plan_extents.h"
#include "app/linework/cell_matching.h"

namespace dxf2d::linework {

namespace {

constexpr int kClasses = 256;
constexpr double kClassWidth = std::numbers::pi / kClasses;
constexpr double kRowsPerWidth = 64.0;
constexpr double kLeastTolerances = 8.0;
// How high a step of the passages through the middle of a column is.
constexpr double kStepTolerances = 64.0;
// Levels are powers of 4 of the length, counted from the shortest edge that takes part: enough for
// edges a millionth to all of the extent.
constexpr int kLevels = 32;
// An edge looks by its line for those of its own level and of so many above.
constexpr int kLevelsByLine = 1;

enum class Found : std::uint8_t { kByLine, kByRow };

// An edge as seen along the axis of a class.
struct AlignedEdge {
  // Along the axis, from the lower to the higher.
  double low;
  double high;
  // Across the axis, there.
  double acrossLow;
  double acrossHigh;

  double AcrossAt(double along) const {
    return acrossLow + (acrossHigh - acrossLow) / (high - low) * (along - low);
  }
};

// As std::floor, which is a call on processors as old as those that this is built for.
std::int64_t floorOf(double value) {
  const auto whole = static_cast<std::int64_t>(value);
  return static_cast<double>(whole) > value ? whole - 1 : whole;
}

std::int64_t cellOf(double value, double size) { return floorOf(value / size); }

// A square grid over the plan.
class Tiles {
 public:
  // `points` are counted from the first of them.
  Tiles(std::span<const PlanPoint> points, std::size_t edges) {
    PlanExtents extents;
    for (const PlanPoint point : points) {
      extents.Add(point);
    }
    // As many as keep what is known of the edges of one in the first cache.
    constexpr std::size_t kEdgesInTile = 64;
    sideBits_ = static_cast<unsigned>(std::bit_width(edges / kEdgesInTile)) / 2;
    const PlanPoint size = extents.High() - extents.Low();
    low_ = extents.Low() - points.front();
    scale_ = Side() / std::max(size.x, size.y);
  }

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

class CollinearGrid {
 public:
  CollinearGrid(const Graph& graph, std::span<const EdgeNumber> edges, double tolerance)
      : graph_(graph),
        edges_(edges),
        tolerance_(tolerance),
        tiles_(graph.points, edges.size()),
        counts_(edges.size()),
        queried_(edges.size()) {
    for (int i = 0; i < kClasses; ++i) {
      const double angle = (i + 0.5) * kClassWidth;
      axes_[static_cast<std::size_t>(i)] = {std::cos(angle), std::sin(angle)};
    }
    places_.reserve(edges.size());
    for (const EdgeNumber edge : edges) {
      AddPlace(edge);
    }
  }

  // Most cells hold a single edge. Counts tell which, so that few cells are ever listed.
  template <typename Visit>
  void QueryAll(const Visit& visit) {
    ForEachEntry([this](std::uint32_t cell, std::uint32_t) { counts_.Add(cell); });
    for (std::uint32_t i = 0; i < places_.size(); ++i) {
      Query(i);
    }
    ForEachEntry([this](std::uint32_t cell, std::uint32_t place) {
      if (queried_.Of(cell) != 0) {
        entries_.push_back({cell, place});
      }
    });
    sortByCell(entries_);
    sortByCell(queries_);
    Match(visit);
  }

 private:
  struct Place {
    double length;
    // Radians, 0 to pi.
    double angle;
    // Below 0 where the edge is too short to take part.
    int level;
  };
  struct Level {
    int classNumber;
    int number;
    // Of its columns.
    double width;
  };

  // Calls visit(cell, place) for each cell that each edge is found in.
  template <typename Visit>
  void ForEachEntry(const Visit& visit) {
    for (std::uint32_t i = 0; i < places_.size(); ++i) {
      const Place& place = places_[i];
      if (place.level < 0) {
        continue;
      }
      const int number = ClassOf(place.angle);
      levels_[static_cast<std::size_t>(number)] |= std::uint32_t{1} << place.level;
      const Level level{number, place.level, WidthOf(place.level)};
      const AlignedEdge aligned = Align(i, number);
      // What is within the tolerance of the edge's line may be beyond its ends by as much.
      ForEachLineCell(aligned, level, tolerance_, 0.0,
                      [&](std::uint32_t cell, bool) { visit(cell, i); });
      if (place.level > lowestLevel_ + kLevelsByLine) {
        ForEachRowCell(aligned, level, 2.0 * tolerance_,
                       [&](std::uint32_t cell) { visit(cell, i); });
      }
    }
  }

  void AddPlace(EdgeNumber edge) {
    const PlanPoint vector =
        graph_.points[graph_.edges[edge].to] - graph_.points[graph_.edges[edge].from];
    const double size = length(vector);
    if (size < kLeastTolerances * tolerance_) {
      places_.push_back({size, 0.0, -1});
      return;
    }
    const double angle = std::atan2(vector.y, vector.x);
    const int octaves = std::ilogb(size / (kLeastTolerances * tolerance_));
    const int level = std::clamp(octaves / 2, 0, kLevels - 1);
    lowestLevel_ = std::min(lowestLevel_, level);
    places_.push_back({size, angle < 0.0 ? angle + std::numbers::pi : angle, level});
  }

  static int ClassOf(double angle) {
    return std::clamp(static_cast<int>(angle / kClassWidth), 0, kClasses - 1);
  }

  double WidthOf(int level) const {
    return std::ldexp(kLeastTolerances * tolerance_, 2 * level + 2);
  }

  AlignedEdge Align(std::uint32_t place, int number) const {
    const Edge edge = graph_.edges[edges_[place]];
    const PlanPoint axis = axes_[static_cast<std::size_t>(number)];
    // Counted from some point of the linework, which may be far from the origin.
    const PlanPoint from = graph_.points[edge.from] - graph_.points.front();
    const PlanPoint to = graph_.points[edge.to] - graph_.points.front();
    const AlignedEdge aligned{dot(axis, from), dot(axis, to), cross(axis, from), cross(axis, to)};
    return aligned.low <= aligned.high
               ? aligned
               : AlignedEdge{aligned.high, aligned.low, aligned.acrossHigh, aligned.acrossLow};
  }

  // The key of a cell: the tile of the plan that its middle lies in, then a hash.
  std::uint32_t CellOf(Found found, const Level& level, std::int64_t column, std::int64_t row,
                       double rowHeight) const {
    const PlanPoint axis = axes_[static_cast<std::size_t>(level.classNumber)];
    const double along = (static_cast<double>(column) + 0.5) * level.width;
    const double across = (static_cast<double>(row) + 0.5) * rowHeight;
    const PlanPoint middle{axis.x * along - axis.y * across, axis.y * along + axis.x * across};
    const int kind =
        2 * (kLevels * level.classNumber + level.number) + (found == Found::kByRow ? 1 : 0);
    std::uint64_t hash = static_cast<std::uint64_t>(column) * 0x9E3779B97F4A7C15U;
    hash = (hash ^ (hash >> 29U) ^ static_cast<std::uint64_t>(row)) * 0xBF58476D1CE4E5B9U;
    hash = (hash ^ (hash >> 31U) ^ static_cast<std::uint64_t>(kind)) * 0x94D049BB133111EBU;
    const std::uint64_t tile = tiles_.NumberOf(middle);
    return static_cast<std::uint32_t>((tile << 32U | hash >> 32U) >> tiles_.Bits());
  }

  // The cells, in each column that the edge touches, of the steps that its line passes the middle
  // in, `reach` more or less.
  template <typename Visit>
  void ForEachLineCell(const AlignedEdge& edge, const Level& level, double margin, double reach,
                       const Visit& visit) const {
    const double step = kStepTolerances * tolerance_;
    const std::int64_t last = cellOf(edge.high + margin, level.width);
    for (std::int64_t column = cellOf(edge.low - margin, level.width); column <= last; ++column) {
      const double across = edge.AcrossAt((static_cast<double>(column) + 0.5) * level.width);
      const std::int64_t middle = cellOf(across, step);
      const std::int64_t lastRow = cellOf(across + reach, step);
      for (std::int64_t row = cellOf(across - reach, step); row <= lastRow; ++row) {
        visit(CellOf(Found::kByLine, level, column, row, step), row == middle);
      }
    }
  }

  // The cells that the edge's rectangle touches, `margin` around it.
  template <typename Visit>
  void ForEachRowCell(const AlignedEdge& edge, const Level& level, double margin,
                      const Visit& visit) const {
    const double height = level.width / kRowsPerWidth + 4.0 * tolerance_;
    const auto [low, high] = std::minmax(edge.acrossLow, edge.acrossHigh);
    const std::int64_t last = cellOf(edge.high + margin, level.width);
    const std::int64_t lastRow = cellOf(high + margin, height);
    for (std::int64_t column = cellOf(edge.low - margin, level.width); column <= last; ++column) {
      for (std::int64_t row = cellOf(low - margin, height); row <= lastRow; ++row) {
        visit(CellOf(Found::kByRow, level, column, row, height));
      }
    }
  }

  void Query(std::uint32_t place) {
    const Place& queried = places_[place];
    if (queried.level < 0) {
      return;
    }
    // How far the longer edge may be turned against this one.
    const double turn = 2.0 * tolerance_ / queried.length;
    const int first = static_cast<int>(std::floor((queried.angle - turn) / kClassWidth));
    const int last = static_cast<int>(std::floor((queried.angle + turn) / kClassWidth));
    for (int number = first; number <= last; ++number) {
      // Opposite directions are the same.
      const int wrapped = (number + kClasses) % kClasses;
      std::uint32_t left = levels_[static_cast<std::size_t>(wrapped)] >> queried.level
                                                                             << queried.level;
      for (; left != 0; left &= left - 1) {
        const int level = std::countr_zero(left);
        QueryLevel(place, {wrapped, level, WidthOf(level)});
      }
    }
  }

  void QueryLevel(std::uint32_t place, const Level& level) {
    const Place& queried = places_[place];
    const bool isOwn = level.number == queried.level && level.classNumber == ClassOf(queried.angle);
    const auto query = [&](std::uint32_t cell, unsigned alone) {
      if (counts_.Of(cell) > alone) {
        queries_.push_back({cell, place});
        queried_.Add(cell);
      }
    };
    const AlignedEdge aligned = Align(place, level.classNumber);
    if (level.number <= queried.level + kLevelsByLine) {
      // The ends are within the tolerance of the other line; the middle of the column is up to half
      // a width beyond them, and the axis is not quite the line's direction.
      const double reach = 1.25 * tolerance_ * (1.0 + 2.0 * level.width / queried.length);
      // The edge itself is in the middle cells of its own class and level.
      ForEachLineCell(aligned, level, 0.0, reach, [&](std::uint32_t cell, bool isMiddle) {
        query(cell, isOwn && isMiddle ? 1 : 0);
      });
    } else {
      ForEachRowCell(aligned, level, 0.0, [&](std::uint32_t cell) { query(cell, 0); });
    }
  }

  template <typename Visit>
  void Match(const Visit& visit) const {
    forEachMatch(queries_, entries_, [&](std::uint32_t queried, std::uint32_t other) {
      const double length = places_[queried].length;
      const double otherLength = places_[other].length;
      if (otherLength > length || (otherLength == length && other > queried)) {
        visit(edges_[queried], edges_[other]);
      }
    });
  }

  const Graph& graph_;
  std::span<const EdgeNumber> edges_;
  double tolerance_;
  Tiles tiles_;
  // Of each of `edges_`; entries and queries hold its place there.
  std::vector<Place> places_;
  int lowestLevel_ = kLevels;
  std::array<PlanPoint, kClasses> axes_{};
  // The levels at which a class has edges, a bit each.
  std::array<std::uint32_t, kClasses> levels_{};
  CellCounts counts_;
  // The cells in which edges are looked for.
  CellCounts queried_;
  std::vector<CellEntry> entries_;
  std::vector<CellEntry> queries_;
};

}  // namespace

void forEachCollinearPair(const Graph& graph, std::span<const EdgeNumber> edges, double tolerance,
                          const std::function<void(EdgeNumber, EdgeNumber)>& visit) {
  if (!edges.empty()) {
    CollinearGrid(graph, edges, tolerance).QueryAll(visit);
  }
}

}  // namespace dxf2d::linework
