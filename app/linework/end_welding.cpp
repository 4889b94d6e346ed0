#include "app/linework/end_welding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

namespace dxf2d::linework {

namespace {

constexpr PointNumber kNone = std::numeric_limits<PointNumber>::max();

// The points found so far, in square cells that are hashed into one table.
class PointGrid {
 public:
  PointGrid(std::span<const PlanPoint> ends, std::size_t mostPoints, double radius)
      : radius_(radius), cell_(kCellRadii * radius) {
    constexpr std::size_t kLeastSlots = 16;
    points_.reserve(mostPoints);
    slots_.assign(std::bit_ceil(std::max(mostPoints + mostPoints / 2, kLeastSlots)), Slot{});
    origin_ = ends.front();
    for (const PlanPoint end : ends) {
      origin_ = {std::min(origin_.x, end.x), std::min(origin_.y, end.y)};
    }
  }

  // A point and the cells that it is looked for in, by their hashes.
  struct Cells {
    PlanPoint point;
    // The one that it is in.
    std::uint64_t own;
    std::array<std::uint64_t, 4> near;
    std::size_t count;
  };

  // Starts loading what Number will need: the table is far larger than the caches.
  Cells Locate(PlanPoint point) const {
    const double column = (point.x - origin_.x) / cell_;
    const double row = (point.y - origin_.y) / cell_;
    // Nearly always the cells around are out of reach.
    constexpr double kReach = 1.0 / kCellRadii;
    Cells cells{point, HashOf(Index(column), Index(row)), {}, 0};
    const std::int64_t lastColumn = Index(column + kReach);
    const std::int64_t lastRow = Index(row + kReach);
    for (std::int64_t i = Index(column - kReach); i <= lastColumn; ++i) {
      for (std::int64_t j = Index(row - kReach); j <= lastRow; ++j) {
        const std::uint64_t hash = HashOf(i, j);
        __builtin_prefetch(&slots_[PlaceOf(hash)], 1);
        cells.near[cells.count++] = hash;
      }
    }
    return cells;
  }

  // The number of the point at `cells`, which is a new one unless another is near enough.
  PointNumber Number(const Cells& cells) {
    Nearest nearest{kNone, radius_ * radius_};
    for (std::size_t i = 0; i < cells.count; ++i) {
      Search(cells.near[i], cells.point, nearest);
    }
    return nearest.point != kNone ? nearest.point : Add(cells.point, cells.own);
  }

  std::vector<PlanPoint> TakePoints() { return std::move(points_); }

 private:
  static constexpr double kCellRadii = 16.0;

  struct Slot {
    // Half of the hash of the cell that the point is in.
    std::uint32_t tag = 0;
    PointNumber point = kNone;
  };
  struct Nearest {
    PointNumber point;
    double squaredDistance;
  };

  // As std::floor, which is a call on processors as old as those that this is built for.
  static std::int64_t Index(double cells) {
    const auto whole = static_cast<std::int64_t>(cells);
    return static_cast<double>(whole) > cells ? whole - 1 : whole;
  }

  static std::uint64_t HashOf(std::int64_t column, std::int64_t row) {
    std::uint64_t hash = static_cast<std::uint64_t>(column) * 0x9E3779B97F4A7C15U;
    hash = (hash ^ (hash >> 29U) ^ static_cast<std::uint64_t>(row)) * 0xBF58476D1CE4E5B9U;
    return hash ^ (hash >> 32U);
  }
  std::size_t PlaceOf(std::uint64_t hash) const { return hash & (slots_.size() - 1); }
  static std::uint32_t TagOf(std::uint64_t hash) { return static_cast<std::uint32_t>(hash >> 32U); }

  void Search(std::uint64_t hash, PlanPoint point, Nearest& nearest) const {
    for (std::size_t i = PlaceOf(hash); slots_[i].point != kNone; i = PlaceOf(i + 1)) {
      if (slots_[i].tag != TagOf(hash)) {
        continue;
      }
      const PointNumber number = slots_[i].point;
      const PlanPoint apart = points_[number] - point;
      const double squared = dot(apart, apart);
      const bool isNearer = squared < nearest.squaredDistance ||
                            (squared == nearest.squaredDistance && number < nearest.point);
      if (isNearer) {
        nearest = {number, squared};
      }
    }
  }

  PointNumber Add(PlanPoint point, std::uint64_t hash) {
    const auto number = static_cast<PointNumber>(points_.size());
    points_.push_back(point);
    std::size_t i = PlaceOf(hash);
    while (slots_[i].point != kNone) {
      i = PlaceOf(i + 1);
    }
    slots_[i] = {TagOf(hash), number};
    return number;
  }

  double radius_;
  double cell_;
  PlanPoint origin_;
  std::vector<PlanPoint> points_;
  // Searched from the place of a cell on to the first free one.
  std::vector<Slot> slots_;
};

// Whether the segment at `i` begins where the one before ends. The segments of a polyline come one
// after the other.
bool goesOn(std::span<const PlanPoint> ends, std::size_t i) {
  return i != 0 && ends[i].x == ends[i - 1].x && ends[i].y == ends[i - 1].y;
}

}  // namespace

Graph weldEnds(std::span<const PlanPoint> ends, double radius) {
  Graph graph;
  if (ends.empty()) {
    return graph;
  }
  std::size_t lines = 0;
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    lines += goesOn(ends, i) ? 0U : 1U;
  }
  PointGrid grid(ends, ends.size() / 2 + lines, radius);
  graph.edges.reserve(ends.size() / 2);
  // Segments whose points are looked for at once: enough for the table to be there in time.
  constexpr std::size_t kSegments = 64;
  std::array<PointGrid::Cells, 2 * kSegments> cells;
  PointNumber to = kNone;
  for (std::size_t begin = 0; begin < ends.size(); begin += cells.size()) {
    const std::size_t end = std::min(begin + cells.size(), ends.size());
    for (std::size_t i = begin; i < end; ++i) {
      if (i % 2 != 0 || !goesOn(ends, i)) {
        cells[i - begin] = grid.Locate(ends[i]);
      }
    }
    for (std::size_t i = begin; i < end; i += 2) {
      const PointNumber from = goesOn(ends, i) ? to : grid.Number(cells[i - begin]);
      to = grid.Number(cells[i + 1 - begin]);
      if (from != to) {
        graph.edges.push_back({from, to});
      }
    }
  }
  graph.points = grid.TakePoints();
  return graph;
}

}  // namespace dxf2d::linework
