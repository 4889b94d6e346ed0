#include "mesh/near_points.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <utility>

#include "mesh/repeat_filter.h"
#include "mesh/vector.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

using Hashes = LargeArray<std::uint32_t>;

// Side of a cell in distances: larger cells hold more points, smaller ones have more points near
// their sides, which stand in the neighboring cells too.
constexpr double kCellSide = 16.0;
// For another look at the few points that are not alone in those.
constexpr double kSmallCellSide = 4.0;

// Cells along an axis from which on doubles stand farther apart than the distance.
constexpr double kMostCells = 1e15;

// A grid of cells, each known by a hash. Doubles do not tell the cells of a wide box apart all over
// it: there the origin is that of the coordinates, where they are densest, and a coordinate beyond
// kMostCells has a cell of its own, as only an equal one is within the distance.
class Grid {
 public:
  // `side`: of a cell, in distances.
  Grid(const Box& box, double distance, double side)
      : cellsPerUnit_(1.0 / (side * distance)), margin_(kMargin / side) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      isWide_ = isWide_ || (box.greatest[axis] - box.least[axis]) * cellsPerUnit_ > kMostCells;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
      // Points that all have the least coordinate, or 0, lie in the middle of their cells.
      origin_[axis] = (isWide_ ? 0.0 : box.least[axis]) - 0.5 * side * distance;
    }
  }

  // Returns the hash of the point's own cell, and calls visit(hash) for each neighboring cell that
  // the distance reaches.
  template <class Visit>
  std::uint32_t Cells(const Point& point, Visit visit) const {
    std::uint64_t cell = 0;
    std::array<std::uint64_t, 3> steps;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double offset = (point[axis] - origin_[axis]) * cellsPerUnit_;
      if (isWide_ && std::fabs(offset) > kMostCells) {
        cell += std::bit_cast<std::uint64_t>(point[axis]) * kFactors[axis];
        steps[axis] = 0;
        continue;
      }
      const auto place = static_cast<std::int64_t>(isWide_ ? std::floor(offset) : offset);
      cell += static_cast<std::uint64_t>(place) * kFactors[axis];
      steps[axis] = Step(offset - static_cast<double>(place), kFactors[axis]);
    }
    if ((steps[0] | steps[1] | steps[2]) != 0) {
      VisitNeighbors(cell, steps, visit);
    }
    return mixed(cell);
  }

 private:
  // A little more than a distance, to be safe from rounding.
  static constexpr double kMargin = 1.01;
  // Neighbors along an axis differ by its factor.
  static constexpr std::array<std::uint64_t, 3> kFactors = {
      0x9e3779b97f4a7c15U, 0xc2b2ae3d27d4eb4fU, 0x165667b19e3779f9U};

  // Which neighbor along an axis a point reaches that lies at `within`, 0 to 1, of its cell.
  std::uint64_t Step(double within, std::uint64_t factor) const {
    const std::uint64_t upward = within > 1.0 - margin_ ? factor : 0;
    return within < margin_ ? std::uint64_t{0} - factor : upward;
  }

  template <class Visit>
  static void VisitNeighbors(std::uint64_t cell, const std::array<std::uint64_t, 3>& steps,
                             Visit visit) {
    for (unsigned neighbor = 1; neighbor < 8; ++neighbor) {
      std::uint64_t sum = cell;
      bool isReached = true;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        if ((neighbor >> axis & 1U) != 0) {
          isReached = isReached && steps[axis] != 0;
          sum += steps[axis];
        }
      }
      if (isReached) {
        visit(mixed(sum));
      }
    }
  }

  Point origin_ = {};
  double cellsPerUnit_;
  // Distance from the side of a cell within which a point reaches the next, in cells.
  double margin_;
  bool isWide_ = false;
};

// Tells which of the points numberOf(i), i below `count`, stand in a cell that another of them
// stands in or reaches, and some others: all that are within the distance of another are told.
// Returns their numbers, in order; `hashes` receives the hashes of the points' own cells, by i.
template <class NumberOf>
std::vector<Index> findCrowded(std::span<const Point> points, std::size_t count, NumberOf numberOf,
                               const Grid& grid, std::size_t threads, Hashes& hashes) {
  const Blocks stretches = Blocks::OneForEach(count, threads);
  std::vector<std::optional<RepeatFilter>> filters(stretches.Count());
  stretches.Run([&](std::size_t number, const Block& block) {
    RepeatFilter& filter = filters[number].emplace(count);
    // In batches, as nothing then comes between the bits and the next ones, which are far apart.
    constexpr std::size_t kBatch = 256;
    std::array<std::uint32_t, kBatch * 8> cells;
    for (std::size_t begin = block.begin; begin < block.end; begin += kBatch) {
      std::size_t size = 0;
      for (std::size_t i = begin; i < std::min(begin + kBatch, block.end); ++i) {
        hashes[i] =
            grid.Cells(points[numberOf(i)], [&](std::uint32_t hash) { cells[size++] = hash; });
        cells[size++] = hashes[i];
      }
      for (std::size_t i = 0; i < size; ++i) {
        filter.Add(cells[i]);
      }
    }
  });
  RepeatFilter& filter = *filters[0];
  for (std::size_t i = 1; i < filters.size(); ++i) {
    filter.Add(*filters[i]);
    filters[i].reset();
  }
  return collectInParallel<Index>(count, threads, [&](std::size_t i, auto& crowded) {
    if (filter.IsRepeated(hashes[i])) {
      crowded.push_back(static_cast<Index>(numberOf(i)));
    }
  });
}

// Those of `some` that are not alone in smaller cells either.
std::vector<Index> stillCrowded(std::span<const Point> points, const std::vector<Index>& some,
                                const Box& box, double distance, std::size_t threads) {
  // In wider boxes rounding would come near to the margin of the cells.
  constexpr double kMostDistances = 1e12;
  const Vector size = difference(box.greatest, box.least);
  if (!(*std::ranges::max_element(size) <= kMostDistances * distance)) {
    return some;
  }
  Hashes hashes(some.size());
  return findCrowded(
      points, some.size(), [&](std::size_t i) { return some[i]; },
      Grid(box, distance, kSmallCellSide), threads, hashes);
}

}  // namespace

std::vector<Index, LargeAllocator<Index>> joinNear(std::span<const Point> points, const Box& box,
                                                   double distance, std::size_t threads) {
  std::vector<Index, LargeAllocator<Index>> joined;
  if (distance <= 0.0) {
    return joined;
  }
  const Grid grid(box, distance, kCellSide);
  Hashes hashes(points.size());
  const std::vector<Index> some = findCrowded(
      points, points.size(), [](std::size_t i) { return i; }, grid, threads, hashes);
  const std::vector<Index> crowded = stillCrowded(points, some, box, distance, threads);
  // A kept point stands in its own cell and in those that the distance reaches, so a search looks
  // into one cell only. Kept points are farther apart than the distance, so a cell holds few.
  SlotTable table(2 * crowded.size());
  constexpr std::size_t kAhead = 8;
  for (std::size_t i = 0; i < crowded.size(); ++i) {
    table.Prefetch(hashes[crowded[std::min(i + kAhead, crowded.size() - 1)]]);
    const Index number = crowded[i];
    const Point& point = points[number];
    const Index found = table.Find(hashes[number], [&](Index kept) {
      const Vector apart = difference(points[kept], point);
      return dot(apart, apart) <= distance * distance;
    });
    if (found == kNone) {
      table.Keep(hashes[number], number);
      grid.Cells(point, [&](std::uint32_t hash) { table.Keep(hash, number); });
      continue;
    }
    if (joined.empty()) {
      joined.resize(points.size());
      std::iota(joined.begin(), joined.end(), Index{0});
    }
    joined[number] = found;
  }
  return joined;
}

}  // namespace dxf2d::mesh
