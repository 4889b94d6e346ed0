#include "geometry/outline/weld.h"

#include <algorithm>

#include "geometry/outline/coord_points.h"
#include "geometry/outline/parallel_weld.h"
#include "platform/parallel.h"
#include "platform/prefetch.h"

namespace dxf2d {

namespace {

// Welds `count` points: pointAt(i) returns the i-th, keep(point) appends one to `kept`.
template <class PointAt, class Keep>
void weld(std::size_t count, PointAt pointAt, Keep keep, const std::vector<KtPoint3>& kept,
          WeldScratch& scratch) {
  struct Candidate {
    KtPoint3 point;
    std::uint64_t hash;
  };
  scratch.table.Reset(count);
  scratch.newIndex.resize(count);
  std::uint32_t* const newIndex = scratch.newIndex.data();
  std::uint32_t keptCount = 0;
  forEachPrefetched(
      scratch.table, count,
      [&](std::size_t i) {
        const KtPoint3 point = pointAt(i);
        return Candidate{point, PointIndex::Hash(point.Get0(), point.Get1(), point.Get2())};
      },
      [&](std::size_t i, const Candidate& candidate) {
        // A point that is not finite equals no kept one, so only new points need testing.
        const std::uint32_t index = scratch.table.FindOrInsertIf(
            candidate.hash, keptCount,
            [&](std::uint32_t other) { return kept[other] == candidate.point; },
            [&] { return isFinite(candidate.point); });
        if (index == keptCount) {
          keep(candidate.point);
          ++keptCount;
        }
        newIndex[i] = index;
        return true;
      });
}

int renumbered(int index, const PointNumbers& newIndex) {
  if (index < 0) {
    return index;
  }
  const auto old = static_cast<std::size_t>(index);
  const bool isKept = old < newIndex.size() && newIndex[old] != PointIndex::kNone;
  return isKept ? static_cast<int>(newIndex[old]) : kNoPoint;
}

void weldInTurn(const std::vector<double>& coords, const KtMatrix& transform,
                std::vector<KtPoint3>& points, WeldScratch& scratch) {
  const std::size_t count = coords.size() / 3;
  const auto keep = [&](const KtPoint3& point) {
    if (points.size() == points.capacity()) {
      // Most sets of triangles that share no points shrink to less than a quarter.
      reserveLarge(points, std::max(count / 4 + 1, points.size() * 2));
    }
    points.push_back(point);
  };
  points.clear();
  withCoordPoints(coords, transform,
                  [&](auto pointAt) { weld(count, pointAt, keep, points, scratch); });
}

}  // namespace

void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch) {
  // In place: writing never overtakes reading.
  std::size_t kept = 0;
  weld(
      points.size(), [&](std::size_t i) { return points[i]; },
      [&](const KtPoint3& point) { points[kept++] = point; }, points, scratch);
  points.resize(kept);
  std::transform(indices.begin(), indices.end(), indices.begin(),
                 [&](int index) { return renumbered(index, scratch.newIndex); });
}

void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::size_t threads, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch) {
  if (threads > 1) {
    weldInParallel(coords, transform, threads, points, scratch.newIndex);
  } else {
    weldInTurn(coords, transform, points, scratch);
  }
  // It may be the list of indices itself.
  reserveLarge(welded, indices.size());
  welded.resize(indices.size());
  Blocks(indices.size(), threads).Run([&](std::size_t, Block block) {
    for (std::size_t i = block.begin; i < block.end; ++i) {
      welded[i] = renumbered(indices[i], scratch.newIndex);
    }
  });
}

}  // namespace dxf2d
