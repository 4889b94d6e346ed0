// Numbers the different points of a list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/outline/point_index.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "platform/large_memory.h"

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

// Replaces `points` by the first of equal points of `coords`, x, y, z triples (a remainder is
// ignored) that are multiplied by `transform`, and `numbers` by the number of each point among
// them. Points are exactly equal; -0 equals 0, and is kept as 0.
//
// Each of `threads` threads numbers the points of one block of the list by themselves. A point that
// an earlier block keeps as well then gets its number there, and those that are left are numbered
// anew, block by block, so that the order is the same with any number of threads.
void numberPoints(const std::vector<double>& coords, const KtMatrix& transform, std::size_t threads,
                  std::vector<KtPoint3>& points, PointNumbers& numbers,
                  std::vector<BlockPoints>& blocks);

// The same in place, with -0 kept where it comes first.
void numberPoints(std::vector<KtPoint3>& points, PointNumbers& numbers, PointIndex& table);

}  // namespace dxf2d
