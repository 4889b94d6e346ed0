#include "app/linework/collinear_grid.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>

#include "app/drawing/plan_extents.h"

namespace dxf2d::linework {

namespace {

constexpr double kRowsPerWidth = 64.0;
// An edge looks by its line for those of its own level and of so many above.
constexpr int kLevelsByLine = 1;

}  // namespace

Tiles::Tiles(std::span<const PlanPoint> points, std::size_t edges) {
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

CollinearGrid::CollinearGrid(const Graph& graph, std::span<const EdgeNumber> edges,
                             double tolerance)
    : graph_(graph),
      edges_(edges),
      tolerance_(tolerance),
      tiles_(graph.points, edges.size()),
      counts_(edges.size()),
      queried_(edges.size()) {
  assert(edges.size() <= OwnCell::kMostPlace);
  for (int i = 0; i < kLengthLevels; ++i) {
    widths_[static_cast<std::size_t>(i)] = columnWidthOf(i, tolerance);
  }
  places_.reserve(edges.size());
  ownCells_.reserve(2 * edges.size());
  for (const EdgeNumber edge : edges) {
    AddPlace(edge);
  }
  ForEachRowEntry([this](std::uint32_t cell, std::uint32_t) { counts_.Add(cell); });
}

void CollinearGrid::ForEachPair(const std::function<void(EdgeNumber, EdgeNumber)>& visit) {
  for (const OwnCell& own : ownCells_) {
    if (own.isQuery != 0) {
      Query(own.place, own.cell, own.isEntry);
    }
  }
  for (std::uint32_t i = 0; i < places_.size(); ++i) {
    QueryOthers(i);
  }
  if (queries_.empty()) {
    return;
  }
  ListEntries();
  sortByCell(entries_);
  sortByCell(queries_);
  forEachMatch(queries_, entries_, [&](std::uint32_t queried, std::uint32_t other) {
    const double length = places_[queried].length;
    const double otherLength = places_[other].length;
    if (otherLength > length || (otherLength == length && other > queried)) {
      visit(edges_[queried], edges_[other]);
    }
  });
}

std::vector<EdgeNumber> CollinearGrid::CrowdedEdges() const {
  std::vector<EdgeNumber> crowded;
  for (const OwnCell& own : ownCells_) {
    if (own.isEntry != 0 && counts_.Of(own.cell) == CellCounts::kMost &&
        (crowded.empty() || crowded.back() != edges_[own.place])) {
      crowded.push_back(edges_[own.place]);
    }
  }
  return crowded;
}

void CollinearGrid::AddPlace(EdgeNumber edge) {
  const PlanPoint vector =
      graph_.points[graph_.edges[edge].to] - graph_.points[graph_.edges[edge].from];
  const double size = length(vector);
  const double least = kLeastTolerances * tolerance_;
  if (size < least) {
    places_.push_back({size, 0.0, 0, -1});
    return;
  }
  const double direction = directionOf(vector);
  const int classNumber = directionClassOf(direction);
  const int level = lengthLevelOf(size / least);
  lowestLevel_ = std::min(lowestLevel_, level);
  levels_[static_cast<std::size_t>(classNumber)] |= std::uint32_t{1} << level;
  places_.push_back({size, direction, classNumber, level});
  AddOwnCells(static_cast<std::uint32_t>(places_.size() - 1));
}

void CollinearGrid::AddOwnCells(std::uint32_t place) {
  const Place& own = places_[place];
  const Level level{own.classNumber, own.level, widths_[static_cast<std::size_t>(own.level)]};
  const AlignedEdge aligned = Align(place, own.classNumber);
  const double reach = ReachOf(own, level);
  const double step = kStepTolerances * tolerance_;
  const std::int64_t firstQuery = cellOf(aligned.Low(), level.width);
  const std::int64_t lastQuery = cellOf(aligned.High(), level.width);
  // What is within the tolerance of the edge's line may be beyond its ends by as much.
  const std::int64_t last = cellOf(aligned.High() + tolerance_, level.width);
  for (std::int64_t column = cellOf(aligned.Low() - tolerance_, level.width); column <= last;
       ++column) {
    const double across = aligned.AcrossColumn(column, level.width);
    const std::int64_t middle = cellOf(across, step);
    const bool isQuery = column >= firstQuery && column <= lastQuery;
    const std::uint32_t cell = CellOf(Found::kByLine, level, column, middle, step);
    counts_.Add(cell);
    ownCells_.push_back({cell, place & OwnCell::kMostPlace, true, isQuery});
    if (!isQuery) {
      continue;
    }
    const std::int64_t lastRow = cellOf(across + reach, step);
    for (std::int64_t row = cellOf(across - reach, step); row <= lastRow; ++row) {
      if (row != middle) {
        ownCells_.push_back({CellOf(Found::kByLine, level, column, row, step),
                             place & OwnCell::kMostPlace, false, true});
      }
    }
  }
}

AlignedEdge CollinearGrid::Align(std::uint32_t place, int classNumber) const {
  const Edge edge = graph_.edges[edges_[place]];
  const PlanPoint from = graph_.points[edge.from];
  // Counted from some point of the linework, which may be far from the origin.
  return {from - graph_.points.front(), graph_.points[edge.to] - from, axes_[classNumber]};
}

// How far from the passage of an edge's own line that of a longer one may be.
double CollinearGrid::ReachOf(const Place& queried, const Level& level) const {
  // The ends are within the tolerance of the other line; the middle of the column is up to half a
  // width beyond them, and the axis is not quite the line's direction.
  return 1.25 * tolerance_ * (1.0 + 2.0 * level.width / queried.length);
}

// The key of a cell: the tile of the plan that its middle lies in, then a hash.
std::uint32_t CollinearGrid::CellOf(Found found, const Level& level, std::int64_t column,
                                    std::int64_t row, double rowHeight) const {
  const PlanPoint axis = axes_[level.classNumber];
  const double along = (static_cast<double>(column) + 0.5) * level.width;
  const double across = (static_cast<double>(row) + 0.5) * rowHeight;
  const PlanPoint middle{axis.x * along - axis.y * across, axis.y * along + axis.x * across};
  const int kind =
      2 * (kLengthLevels * level.classNumber + level.number) + (found == Found::kByRow ? 1 : 0);
  std::uint64_t hash = static_cast<std::uint64_t>(column) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ (hash >> 29U) ^ static_cast<std::uint64_t>(row)) * 0xBF58476D1CE4E5B9U;
  hash = (hash ^ (hash >> 31U) ^ static_cast<std::uint64_t>(kind)) * 0x94D049BB133111EBU;
  const std::uint64_t tile = tiles_.NumberOf(middle);
  return static_cast<std::uint32_t>((tile << 32U | hash >> 32U) >> tiles_.Bits());
}

// The cells, in each column that the edge touches, of the steps that its line passes the middle in,
// `reach` more or less.
template <typename Visit>
void CollinearGrid::ForEachLineCell(const AlignedEdge& edge, const Level& level, double reach,
                                    const Visit& visit) const {
  const double step = kStepTolerances * tolerance_;
  const std::int64_t last = cellOf(edge.High(), level.width);
  for (std::int64_t column = cellOf(edge.Low(), level.width); column <= last; ++column) {
    const double across = edge.AcrossColumn(column, level.width);
    const std::int64_t lastRow = cellOf(across + reach, step);
    for (std::int64_t row = cellOf(across - reach, step); row <= lastRow; ++row) {
      visit(CellOf(Found::kByLine, level, column, row, step));
    }
  }
}

// The cells that the edge's rectangle touches, `margin` around it.
template <typename Visit>
void CollinearGrid::ForEachRowCell(const AlignedEdge& edge, const Level& level, double margin,
                                   const Visit& visit) const {
  const double height = level.width / kRowsPerWidth + 4.0 * tolerance_;
  const std::int64_t last = cellOf(edge.High() + margin, level.width);
  const std::int64_t lastRow = cellOf(edge.Top() + margin, height);
  for (std::int64_t column = cellOf(edge.Low() - margin, level.width); column <= last; ++column) {
    for (std::int64_t row = cellOf(edge.Bottom() - margin, height); row <= lastRow; ++row) {
      visit(CellOf(Found::kByRow, level, column, row, height));
    }
  }
}

// Calls visit(cell, place) for each cell in which each edge is found by much shorter ones.
template <typename Visit>
void CollinearGrid::ForEachRowEntry(const Visit& visit) const {
  for (std::uint32_t i = 0; i < places_.size(); ++i) {
    const Place& place = places_[i];
    if (place.level > lowestLevel_ + kLevelsByLine) {
      const Level level{place.classNumber, place.level,
                        widths_[static_cast<std::size_t>(place.level)]};
      ForEachRowCell(Align(i, place.classNumber), level, 2.0 * tolerance_,
                     [&](std::uint32_t cell) { visit(cell, i); });
    }
  }
}

// Looks in a cell in which `alone` edges are this one.
void CollinearGrid::Query(std::uint32_t place, std::uint32_t cell, unsigned alone) {
  if (counts_.Of(cell) > alone) {
    queries_.push_back({cell, place});
    queried_.Add(cell);
  }
}

// Looks for edges of other classes or of higher levels.
void CollinearGrid::QueryOthers(std::uint32_t place) {
  const Place& queried = places_[place];
  if (queried.level < 0) {
    return;
  }
  // How far the longer edge may be turned against this one.
  const double turn = 2.0 * tolerance_ / queried.length;
  const std::int64_t last = cellOf(queried.direction + turn, kDirectionClassWidth);
  for (std::int64_t number = cellOf(queried.direction - turn, kDirectionClassWidth); number <= last;
       ++number) {
    // Opposite directions are the same.
    const int wrapped = static_cast<int>((number + kDirectionClasses) % kDirectionClasses);
    std::uint32_t left = levels_[static_cast<std::size_t>(wrapped)] >> queried.level
                                                                           << queried.level;
    if (wrapped == queried.classNumber) {
      left &= ~(std::uint32_t{1} << queried.level);
    }
    for (; left != 0; left &= left - 1) {
      const int level = std::countr_zero(left);
      QueryLevel(place, {wrapped, level, widths_[static_cast<std::size_t>(level)]});
    }
  }
}

void CollinearGrid::QueryLevel(std::uint32_t place, const Level& level) {
  const Place& queried = places_[place];
  const AlignedEdge aligned = Align(place, level.classNumber);
  const auto query = [&](std::uint32_t cell) { Query(place, cell, 0); };
  if (level.number <= queried.level + kLevelsByLine) {
    ForEachLineCell(aligned, level, ReachOf(queried, level), query);
  } else {
    ForEachRowCell(aligned, level, 0.0, query);
  }
}

// The edges in the cells that are looked into.
void CollinearGrid::ListEntries() {
  const auto list = [this](std::uint32_t cell, std::uint32_t place) {
    if (queried_.Of(cell) != 0) {
      entries_.push_back({cell, place});
    }
  };
  for (const OwnCell& own : ownCells_) {
    if (own.isEntry != 0) {
      list(own.cell, own.place);
    }
  }
  ForEachRowEntry(list);
}

}  // namespace dxf2d::linework
