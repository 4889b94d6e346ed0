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

}  // namespace

void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch) {
  // Hashes are made a batch ahead, so that the table's cache lines arrive while others are probed.
  constexpr std::size_t kBatch = 32;
  std::array<std::uint64_t, kBatch> hashes;
  scratch.table.Reset(points.size());
  scratch.newIndex.resize(points.size());
  std::uint32_t kept = 0;
  for (std::size_t begin = 0; begin < points.size(); begin += kBatch) {
    const std::size_t count = std::min(kBatch, points.size() - begin);
    for (std::size_t i = 0; i < count; ++i) {
      const KtPoint3& point = points[begin + i];
      hashes[i] = PointIndex::Hash(point.Get0(), point.Get1(), point.Get2());
      scratch.table.Prefetch(hashes[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
      const KtPoint3 point = points[begin + i];
      if (!isFinite(point)) {
        scratch.newIndex[begin + i] = kNoPoint;
        continue;
      }
      const std::uint32_t index = scratch.table.FindOrKeep(
          hashes[i], kept, [&](std::uint32_t other) { return points[other] == point; });
      if (index == kept) {
        points[kept++] = point;
      }
      scratch.newIndex[begin + i] = index;
    }
  }
  for (int& index : indices) {
    if (index >= 0) {
      const auto old = static_cast<std::size_t>(index);
      index = old < points.size() ? static_cast<int>(scratch.newIndex[old]) : kNoPoint;
    }
  }
  points.resize(kept);
}
