#include "geometry/weld.h"

#include <algorithm>
#include <array>
#include <cstring>

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
    std::uint32_t* const newIndex = scratch.newIndex.data() + begin;
    for (std::size_t i = 0; i < size; ++i) {
      // What is not finite equals nothing that is kept, so only new points need be tested.
      const std::uint32_t index = scratch.table.FindOrKeepIf(
          hashes[i], keptCount, [&](std::uint32_t other) { return kept[other] == batch[i]; },
          [&] { return isFinite(batch[i]); });
      if (index == keptCount) {
        keep(batch[i]);
        ++keptCount;
      }
      newIndex[i] = index;
    }
  }
}

int renumbered(int index,
               const std::vector<std::uint32_t, LargeAllocator<std::uint32_t>>& newIndex) {
  if (index < 0) {
    return index;
  }
  const auto old = static_cast<std::size_t>(index);
  const bool isKept = old < newIndex.size() && newIndex[old] != PointIndex::kNone;
  return isKept ? static_cast<int>(newIndex[old]) : kNoPoint;
}

// Bit by bit: what a zero of the other sign adds to a product shows in the sign of its zeros.
bool isExactIdentity(const KtMatrix& matrix) {
  constexpr std::size_t kBytes = 16 * sizeof(double);
  return std::memcmp(matrix.Data(), KtMatrix().Data(), kBytes) == 0;
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
                 [&](int index) { return renumbered(index, scratch.newIndex); });
}

void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch) {
  const std::size_t count = coords.size() / 3;
  const auto keep = [&](const KtPoint3& point) {
    if (points.size() == points.capacity()) {
      // Most sets of triangles that share nothing come to less than a quarter.
      ReserveLarge(points, std::max(count / 4 + 1, points.size() * 2));
    }
    points.push_back(point);
  };
  points.clear();
  const double* const from = coords.data();
  if (isExactIdentity(transform)) {
    // Most sets, for they belong to the object that they stand in. The sums make of -0 the 0 that
    // the product makes of it.
    const auto pointAt = [from](std::size_t i) {
      return KtPoint3(from[3 * i] + 0.0, from[3 * i + 1] + 0.0, from[3 * i + 2] + 0.0);
    };
    weld(count, pointAt, keep, points, scratch);
  } else {
    const auto pointAt = [from, &transform](std::size_t i) {
      KtPoint3 point(from[3 * i], from[3 * i + 1], from[3 * i + 2]);
      point.Mult(transform);
      return point;
    };
    weld(count, pointAt, keep, points, scratch);
  }
  ReserveLarge(welded, indices.size());
  welded.resize(indices.size());
  std::transform(indices.begin(), indices.end(), welded.begin(),
                 [&](int index) { return renumbered(index, scratch.newIndex); });
}
