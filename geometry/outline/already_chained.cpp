#include "geometry/outline/already_chained.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#include "geometry/outline/point_index.h"
#include "ktscene/kt_run_code.h"
#include "platform/large_memory.h"
#include "platform/prefetch.h"
#include "platform/scratch_pool.h"

namespace dxf2d {

namespace {

// Whether the runs are as the header demands, with `pointCount` points.
bool areAscendingStrips(const std::vector<int>& indices, std::size_t pointCount) {
  int last = -1;
  for (std::size_t begin = 0; begin < indices.size();) {
    std::size_t end = begin;
    while (end < indices.size() && indices[end] > last) {
      last = indices[end++];
    }
    const std::size_t length = end - begin;
    if (length >= 3 && end < indices.size() && indices[end] == indices[begin]) {
      ++end;
    }
    if (length < 2 || end == indices.size() ||
        (indices[end] != KtRunCode::kLineStrip && indices[end] != KtRunCode::kSegment)) {
      return false;
    }
    begin = end + 1;
  }
  return last >= 0 && static_cast<std::size_t>(last) < pointCount;
}

// A set of hashes, in open addressing: a slot holds the upper half of a hash, the position depends
// on the lower half.
class DistinctHashes {
 public:
  // Empties the set and makes room for `count` hashes.
  void Reset(std::size_t count) {
    slots_.assign(std::bit_ceil(3 * count), kEmpty);
    mask_ = slots_.size() - 1;
  }

  void Prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

  // Adds `hash`. Returns false if it may be in the set already: if it is, or a hash that cannot be
  // told from it.
  bool InsertIfAbsent(std::uint64_t hash) {
    // Long probe sequences occur only for adversarial points; the general path handles those.
    constexpr int kMostProbes = 64;
    const auto tag = static_cast<std::uint32_t>(hash >> 32) | 1;
    std::size_t slot = hash & mask_;
    for (int probes = 0; slots_[slot] != kEmpty; ++probes) {
      if (slots_[slot] == tag || probes == kMostProbes) {
        return false;
      }
      slot = (slot + 1) & mask_;
    }
    slots_[slot] = tag;
    return true;
  }

  std::size_t CapacityBytes() const { return slots_.capacity() * sizeof(std::uint32_t); }

 private:
  static constexpr std::uint32_t kEmpty = 0;

  std::vector<std::uint32_t, LargeAllocator<std::uint32_t>> slots_;
  std::size_t mask_ = 0;
};

// Whether all points are finite and no two are at the same place in plan.
bool arePlacesDistinct(const PlacedCoords& placed, DistinctHashes& hashes) {
  struct Place {
    std::uint64_t hash;
  };
  hashes.Reset(placed.Count());
  // Stays zero as long as every coordinate is finite, and no sum of three is too large.
  double zero = 0.0;
  const bool distinct = forEachPrefetched(
      hashes, placed.Count(),
      [&](std::size_t i) {
        const KtPoint3 point = placed.At(i);
        zero += (point.Get0() + point.Get1() + point.Get2()) * 0.0;
        return Place{PointIndex::Hash(point.Get0(), point.Get1())};
      },
      [&](std::size_t /*i*/, const Place& place) { return hashes.InsertIfAbsent(place.hash); });
  return distinct && zero == 0.0;
}

}  // namespace

bool isAlreadyChained(const PlacedCoords& placed, const std::vector<int>& indices) {
  // Kept from call to call, because small sets come by the thousand; freed after a huge one.
  constexpr std::size_t kKeptBytes = std::size_t{1} << 20U;
  static ScratchPool<DistinctHashes> pool;
  if (!areAscendingStrips(indices, placed.Count())) {
    return false;
  }
  const ScratchPool<DistinctHashes>::Loan loan(pool);
  DistinctHashes& hashes = *loan;
  const bool distinct = arePlacesDistinct(placed, hashes);
  if (hashes.CapacityBytes() > kKeptBytes) {
    hashes = DistinctHashes();
  }
  return distinct;
}

}  // namespace dxf2d
