// Joins points that are equal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/point_index.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "platform/large_memory.h"

struct WeldScratch {
  using Numbers = std::vector<std::uint32_t, LargeAllocator<std::uint32_t>>;

  PointIndex table;
  Numbers newIndex;  // by point: its number among those that are kept, or PointIndex::kNone

  std::size_t CapacityBytes() const {
    return table.CapacityBytes() + newIndex.capacity() * sizeof(std::uint32_t);
  }
};

// An index entry that names no point after the weld; it is not negative, so it closes no run.
inline constexpr int kNoPoint = 0x7fffffff;

// Keeps of equal points (exactly equal; -0 equals 0) the first, in their order, and makes `indices`
// name what is kept. Points that are not finite are dropped; entries that name them, or no point at
// all, become kNoPoint. Negative entries are codes and stay.
void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch);

// The same for points that are still `coords`, x, y, z triples (a remainder is ignored), to be
// multiplied by `transform`: what is kept goes to `points`, and `indices` as they name it go to
// `welded`, replacing what the two held. A set of triangles that share nothing has six times the
// points that are kept, so making them all first would be most of the memory that an outline takes.
void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch);
