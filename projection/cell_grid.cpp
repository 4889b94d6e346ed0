#include "projection/cell_grid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/parallel.h"
#include "projection/grid_lines.h"

namespace dxf2d::projection {
namespace {

// About as many triangles as fit into the processor's nearer caches once they are set up.
constexpr double kTrianglesPerBlock = 1500;
constexpr double kMostBlocksASide = 1024;
// Entries in the blocks' lists for each triangle or edge, on average, before blocks become larger.
constexpr double kEntriesPerItem = 4;
// The grid stands a little off the scene's bounds, so that its lines are not those of the model.
constexpr double kMargin = 0.00137;

struct Extent {
  double x0 = std::numeric_limits<double>::infinity();
  double y0 = std::numeric_limits<double>::infinity();
  double x1 = -std::numeric_limits<double>::infinity();
  double y1 = -std::numeric_limits<double>::infinity();

  void Add(const Point& point) {
    x0 = std::min(x0, point[0]);
    y0 = std::min(y0, point[1]);
    x1 = std::max(x1, point[0]);
    y1 = std::max(y1, point[1]);
  }
};

// Part `share` of `shares` of a list.
Block shareOf(std::size_t size, std::size_t shares, std::size_t share) {
  return {size * share / shares, size * (share + 1) / shares};
}

// Sorts into `entries`, in compressed rows by block, what forEachEntry(i, visit) visits as
// visit(block, entry), for i below `count`; within a row in order of i. Each thread has a part of
// the numbers below `count`, and a place of its own in every row.
template <class ForEachEntry>
void sortIntoBlocks(std::size_t count, std::size_t blockCount, std::size_t threads,
                    ForEachEntry forEachEntry, std::vector<std::size_t>& starts,
                    std::vector<Index>& entries) {
  std::vector<std::vector<std::size_t>> places(threads);
  const auto runShares = [&](auto visit) {
    runInParallel(threads, threads, [&](std::size_t share) {
      std::vector<std::size_t>& own = places[share];
      own.resize(blockCount);
      const Block numbers = shareOf(count, threads, share);
      for (std::size_t i = numbers.begin; i < numbers.end; ++i) {
        forEachEntry(i, [&](std::size_t block, Index entry) { visit(own[block], entry); });
      }
    });
  };
  runShares([](std::size_t& place, Index) { ++place; });
  starts.assign(blockCount + 1, 0);
  std::size_t sum = 0;
  for (std::size_t block = 0; block < blockCount; ++block) {
    starts[block] = sum;
    for (std::vector<std::size_t>& own : places) {
      sum += std::exchange(own[block], sum);
    }
  }
  starts[blockCount] = sum;
  entries.resize(sum);
  runShares([&](std::size_t& place, Index entry) { entries[place++] = entry; });
}

Extent extentOf(const Scene& scene, std::span<const Index> triangles,
                std::span<const CandidateEdge> edges, std::size_t threads) {
  std::vector<Extent> extents(threads);
  runInParallel(threads, threads, [&](std::size_t share) {
    Extent own;
    const Block some = shareOf(triangles.size(), threads, share);
    for (const Index t : triangles.subspan(some.begin, some.end - some.begin)) {
      for (const Index corner : scene.triangles[t]) {
        own.Add(scene.points[corner]);
      }
    }
    const Block others = shareOf(edges.size(), threads, share);
    for (const CandidateEdge& edge : edges.subspan(others.begin, others.end - others.begin)) {
      own.Add(scene.points[edge.from]);
      own.Add(scene.points[edge.to]);
    }
    extents[share] = own;
  });
  Extent all;
  for (const Extent& some : extents) {
    all.x0 = std::min(all.x0, some.x0);
    all.y0 = std::min(all.y0, some.y0);
    all.x1 = std::max(all.x1, some.x1);
    all.y1 = std::max(all.y1, some.y1);
  }
  return all;
}

}  // namespace

CellGrid::CellGrid(const Scene& scene, std::span<const Index> triangles,
                   std::span<const CandidateEdge> edges, const Tolerances& tolerances,
                   std::size_t threads)
    : scene_(scene), edges_(edges), tolerances_(tolerances) {
  Extent extent = extentOf(scene, triangles, edges, threads);
  if (!(extent.x0 <= extent.x1)) {
    extent = {0, 0, 0, 0};
  }
  middleX_ = extent.x0 + (extent.x1 - extent.x0) / 2;
  middleY_ = extent.y0 + (extent.y1 - extent.y0) / 2;
  const double width = extent.x1 - extent.x0;
  const double height = extent.y1 - extent.y0;
  const double margin = kMargin * std::max(width, height) + 4 * tolerances.plan;
  // Not half the width: the middle of a small scene far from the origin is rounded.
  extent_ = {extent.x0 - middleX_ - margin, extent.y0 - middleY_ - margin,
             extent.x1 - middleX_ + 1.3 * margin, extent.y1 - middleY_ + 1.7 * margin};
  ChooseSize(triangles);
  SortTriangles(triangles, threads);
  SortEdges(threads);
}

void CellGrid::ChooseSize(std::span<const Index> triangles) {
  const double width = extent_.x1 - extent_.x0;
  const double height = extent_.y1 - extent_.y0;
  const auto items = static_cast<double>(triangles.size() + edges_.size());
  double blocks = items / kTrianglesPerBlock;
  while (blocks > 1 && width > 0 && height > 0) {
    const double side = std::sqrt(width * height / blocks);
    const double columns = std::clamp(std::floor(width / side), 1.0, kMostBlocksASide);
    const double rows = std::clamp(std::floor(height / side), 1.0, kMostBlocksASide);
    columns_ = static_cast<std::size_t>(columns);
    rows_ = static_cast<std::size_t>(rows);
    double entries = 0;
    for (const Index t : triangles) {
      Extent box;
      for (const Index corner : scene_.triangles[t]) {
        box.Add(scene_.points[corner]);
      }
      entries +=
          ((box.x1 - box.x0) / width * columns + 1) * ((box.y1 - box.y0) / height * rows + 1);
    }
    for (const CandidateEdge& edge : edges_) {
      const Point& a = scene_.points[edge.from];
      const Point& b = scene_.points[edge.to];
      entries +=
          std::abs(a[0] - b[0]) / width * columns + std::abs(a[1] - b[1]) / height * rows + 1;
    }
    if (entries <= kEntriesPerItem * items) {
      return;
    }
    blocks /= 4;
  }
  columns_ = 1;
  rows_ = 1;
}

std::size_t CellGrid::ColumnOf(double x) const {
  return cellOf(x, extent_.x0, extent_.x1, columns_);
}

std::size_t CellGrid::RowOf(double y) const { return cellOf(y, extent_.y0, extent_.y1, rows_); }

Rectangle CellGrid::BlockRectangle(std::size_t column, std::size_t row) const {
  return {lineOf(column, extent_.x0, extent_.x1, columns_),
          lineOf(row, extent_.y0, extent_.y1, rows_),
          lineOf(column + 1, extent_.x0, extent_.x1, columns_),
          lineOf(row + 1, extent_.y0, extent_.y1, rows_)};
}

template <class Visit>
void CellGrid::ForEachBlockOfTriangle(Index triangle, Visit visit) const {
  Extent box;
  for (const Index corner : scene_.triangles[triangle]) {
    box.Add(scene_.points[corner]);
  }
  const double slack = 2 * tolerances_.plan;
  const std::size_t lastColumn = ColumnOf(box.x1 - middleX_ + slack);
  const std::size_t lastRow = RowOf(box.y1 - middleY_ + slack);
  for (std::size_t row = RowOf(box.y0 - middleY_ - slack); row <= lastRow; ++row) {
    for (std::size_t column = ColumnOf(box.x0 - middleX_ - slack); column <= lastColumn; ++column) {
      visit(row * columns_ + column);
    }
  }
}

void CellGrid::SortTriangles(std::span<const Index> triangles, std::size_t threads) {
  std::vector<char> isFlat(triangles.size());
  runInParallel(threads, threads, [&](std::size_t share) {
    const Block block = shareOf(triangles.size(), threads, share);
    for (std::size_t i = block.begin; i < block.end; ++i) {
      isFlat[i] = planWidth(scene_, triangles[i]) <= tolerances_.edgeOn ? 1 : 0;
    }
  });
  sortIntoBlocks(
      triangles.size(), BlockCount(), threads,
      [&](std::size_t i, auto visit) {
        if (isFlat[i] == 0) {
          ForEachBlockOfTriangle(triangles[i],
                                 [&](std::size_t block) { visit(block, triangles[i]); });
        }
      },
      triangleStarts_, triangleItems_);
}

PlanSegment CellGrid::SegmentOf(Index edge) const {
  const Point& a = scene_.points[edges_[edge].from];
  const Point& b = scene_.points[edges_[edge].to];
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  return {a[0] - middleX_, a[1] - middleY_, a[2], dx, dy, b[2] - a[2], edge};
}

void CellGrid::SortEdges(std::size_t threads) {
  sortIntoBlocks(
      edges_.size(), BlockCount(), threads,
      [&](std::size_t i, auto visit) {
        const auto number = static_cast<Index>(i);
        const PlanSegment segment = SegmentOf(number);
        if (segment.length > tolerances_.plan) {
          forEachCellOnSegment(segment, {0, 1}, extent_, columns_, rows_, tolerances_.plan,
                               [&](std::size_t column, std::size_t row, const Interval&) {
                                 visit(row * columns_ + column, number);
                               });
        }
      },
      edgeStarts_, edgeItems_);
}

}  // namespace dxf2d::projection
