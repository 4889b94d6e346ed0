// Numbers the different points of a list.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/outline/point_index.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"
#include "platform/prefetch.h"

namespace dxf2d {

// The number of a point that is not finite. It is not negative, so it ends no run.
inline constexpr int kNoPoint = 0x7fffffff;

// For each point of a list, the number of the kept point that equals it, or kNoPoint.
using PointNumbers = std::vector<int, LargeAllocator<int>>;

// The different points of a part of a list, in the order in which they come first.
struct BlockPoints {
  // Which of the points of all blocks a kept point is: first the block that keeps it too, and its
  // number there; in the end its number among those of all.
  struct Origin {
    std::uint32_t block;
    std::uint32_t number;
  };

  PointIndex table;
  std::vector<KtPoint3> kept;
  std::vector<Origin> origins;

  std::size_t CapacityBytes() const {
    return table.CapacityBytes() + kept.capacity() * sizeof(KtPoint3) +
           origins.capacity() * sizeof(Origin);
  }
};

inline std::uint64_t hashOf(const KtPoint3& point) {
  return PointIndex::Hash(point.Get0(), point.Get1(), point.Get2());
}

// How many of `pointCount` points are likely to be kept: nearly all of them where the entries of
// the index list name each several times, and few where triangles share no points, each of which
// then comes six times on average.
inline std::size_t expectedPoints(std::size_t pointCount, std::size_t indexCount) {
  return indexCount / 2 > pointCount ? pointCount : pointCount / 4;
}

// Numbers `count` points, of which about `expected` are kept: pointAt(i) is the i-th, keep(point)
// appends one to the kept ones, of which keptAt(number) is one.
template <class PointAt, class Keep, class KeptAt>
void numberEach(std::size_t count, std::size_t expected, PointAt pointAt, Keep keep, KeptAt keptAt,
                PointIndex& table, int* numbers) {
  table.Reset(expected + expected / 2);
  std::uint32_t keptCount = 0;
  struct Candidate {
    KtPoint3 point;
    std::uint64_t hash;
  };
  forEachPrefetched(
      table, count,
      [&](std::size_t i) {
        const KtPoint3 point = pointAt(i);
        return Candidate{point, hashOf(point)};
      },
      [&](std::size_t i, const Candidate& candidate) {
        // A point that is not finite equals no kept one, so only new points need testing.
        const std::uint32_t number = table.FindOrInsertIf(
            candidate.hash, keptCount,
            [&](std::uint32_t other) { return keptAt(other) == candidate.point; },
            [&] { return isFinite(candidate.point); });
        if (number == keptCount) {
          keep(candidate.point);
          ++keptCount;
          if (table.IsCrowdedBy(keptCount)) {
            table.Grow(keptCount, [&](std::uint32_t other) { return hashOf(keptAt(other)); });
          }
        }
        numbers[i] = number == PointIndex::kNone ? kNoPoint : static_cast<int>(number);
        return true;
      });
}

// The same for a part of a list of coordinates.
template <class PointAt>
void numberBlock(Block block, std::size_t expected, PointAt pointAt, std::vector<KtPoint3>& kept,
                 PointIndex& table, int* numbers) {
  kept.clear();
  reserveLarge(kept, expected);
  numberEach(
      block.end - block.begin, expected, [&](std::size_t i) { return pointAt(block.begin + i); },
      [&](const KtPoint3& point) { appendLarge(kept, point); },
      [&](std::uint32_t number) -> const KtPoint3& { return kept[number]; }, table,
      numbers + block.begin);
}

// Block `number` of the `threads` blocks of `count` points.
inline Block blockOf(std::size_t number, std::size_t threads, std::size_t count) {
  const std::size_t size = count / threads;
  return {size * number, number + 1 == threads ? count : size * (number + 1)};
}

// Collects in `points` what the blocks of a list of `count` points keep, and makes `numbers`, which
// are numbers in a point's own block, those among all.
void joinBlocks(std::vector<BlockPoints>& blocks, std::size_t count, std::vector<KtPoint3>& points,
                PointNumbers& numbers);

// Replaces `points` by the first of equal ones of the `count` points pointAt(i), and `numbers` by
// the number of each point among them. Points are exactly equal; -0 equals 0. About `expected` are
// kept (expectedPoints). Several threads call pointAt at a time.
//
// Each of `threads` threads numbers the points of one block of the list by themselves. A point that
// an earlier block keeps as well then gets its number there, and those that are left are numbered
// anew, block by block, so that the order is the same with any number of threads.
template <class PointAt>
void numberPoints(std::size_t count, std::size_t expected, PointAt pointAt, std::size_t threads,
                  std::vector<KtPoint3>& points, PointNumbers& numbers,
                  std::vector<BlockPoints>& blocks) {
  assert(threads <= kMostThreads);
  numbers.resize(count);
  blocks.resize(threads);
  runInParallel(threads, threads, [&](std::size_t number) {
    BlockPoints& block = blocks[number];
    numberBlock(blockOf(number, threads, count), expected / threads, pointAt,
                threads == 1 ? points : block.kept, block.table, numbers.data());
  });
  if (threads > 1) {
    joinBlocks(blocks, count, points, numbers);
  }
}

// The same for `coords`, x, y, z triples (a remainder is ignored), multiplied by `transform`; no
// point has a -0.
void numberPoints(const std::vector<double>& coords, const KtMatrix& transform,
                  std::size_t expected, std::size_t threads, std::vector<KtPoint3>& points,
                  PointNumbers& numbers, std::vector<BlockPoints>& blocks);

// The same in place.
void numberPoints(std::vector<KtPoint3>& points, PointNumbers& numbers, PointIndex& table);

}  // namespace dxf2d
