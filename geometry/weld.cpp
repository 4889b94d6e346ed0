#include "geometry/weld.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

bool isFinite(const KtPoint3& point) {
  // One test for three: the sum of zeros is a number just when each factor was finite.
  const double zero = (point.Get0() * 0.0 + point.Get1() * 0.0) + point.Get2() * 0.0;
  return zero == 0.0;
}

// Welds `count` points: pointAt(i) makes the i-th, keep(point) appends one to `kept`.
template <class PointAt, class Keep>
void weld(std::size_t count, PointAt pointAt, Keep keep, const std::vector<KtPoint3>& kept,
          WeldScratch& scratch) {
  // Hashes are made a batch ahead, so that the table's cache lines arrive while others are probed.
  constexpr std::size_t kBatch = 32;
  std::array<KtPoint3, kBatch> batch;
  std::array<std::uint64_t, kBatch> hashes;
  scratch.table.Reset(count);
  scratch.newIndex.resize(count);
  std::uint32_t keptCount = 0;
  for (std::size_t begin = 0; begin < count; begin += kBatch) {
    const std::size_t size = std::min(kBatch, count - begin);
    for (std::size_t i = 0; i < size; ++i) {
      const KtPoint3 point = pointAt(begin + i);
      batch[i] = point;
      hashes[i] = PointIndex::Hash(point.Get0(), point.Get1(), point.Get2());
      scratch.table.Prefetch(hashes[i]);
    }
    for (std::size_t i = 0; i < size; ++i) {
      if (!isFinite(batch[i])) {
        scratch.newIndex[begin + i] = kNoPoint;
        continue;
      }
      const std::uint32_t index = scratch.table.FindOrKeep(
          hashes[i], keptCount, [&](std::uint32_t other) { return kept[other] == batch[i]; });
      if (index == keptCount) {
        keep(batch[i]);
        ++keptCount;
      }
      scratch.newIndex[begin + i] = index;
    }
  }
}

int renumbered(int index, const WeldScratch& scratch) {
  if (index < 0) {
    return index;
  }
  const auto old = static_cast<std::size_t>(index);
  return old < scratch.newIndex.size() ? static_cast<int>(scratch.newIndex[old]) : kNoPoint;
}

}  // namespace

void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch) {
  // In place: what is kept never overtakes what is read.
  std::size_t kept = 0;
  weld(
      points.size(), [&](std::size_t i) { return points[i]; },
      [&](const KtPoint3& point) { points[kept++] = point; }, points, scratch);
  points.resize(kept);
  std::transform(indices.begin(), indices.end(), indices.begin(),
                 [&](int index) { return renumbered(index, scratch); });
}

void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch) {
  const std::size_t count = coords.size() / 3;
  const auto pointAt = [&](std::size_t i) {
    KtPoint3 point(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    point.Mult(transform);
    return point;
  };
  const auto keep = [&](const KtPoint3& point) {
    if (points.size() == points.capacity()) {
      // Most sets of triangles that share nothing come to less than a quarter.
      ReserveLarge(points, std::max(count / 4 + 1, points.size() * 2));
    }
    points.push_back(point);
  };
  points.clear();
  weld(count, pointAt, keep, points, scratch);
  ReserveLarge(welded, indices.size());
  welded.resize(indices.size());
  std::transform(indices.begin(), indices.end(), welded.begin(),
                 [&](int index) { return renumbered(index, scratch); });
}
