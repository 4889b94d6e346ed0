#include "geometry/given_chains.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "geometry/index_codes.h"
#include "geometry/point_index.h"
#include "platform/large_memory.h"

namespace {

// Whether the runs are as the header says; `pointCount` points exist.
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
        (indices[end] != kLineStripCode && indices[end] != kSegmentCode)) {
      return false;
    }
    begin = end + 1;
  }
  return last >= 0 && static_cast<std::size_t>(last) < pointCount;
}

// Tells whether hashes are all different, in open addressing over what the slot leaves of a hash.
class DistinctHashes {
 public:
  // Forgets everything and makes room for `count`.
  void Reset(std::size_t count) {
    slots_.assign(std::bit_ceil(3 * count), kEmpty);
    mask_ = slots_.size() - 1;
  }

  void Prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

  // False when `hash` may be here already: when it, or one too like it, is.
  bool Add(std::uint64_t hash) {
    // Many neighbours only come of points chosen to make them; those are left to another way.
    constexpr int kMostNeighbours = 64;
    const auto tag = static_cast<std::uint32_t>(hash >> 32) | 1;
    std::size_t slot = hash & mask_;
    for (int neighbours = 0; slots_[slot] != kEmpty; ++neighbours) {
      if (slots_[slot] == tag || neighbours == kMostNeighbours) {
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

bool arePlacesDistinct(const PlacedCoords& placed, DistinctHashes& hashes) {
  // Hashes are made a batch ahead, so that the table's cache lines arrive while others are probed.
  constexpr std::size_t kBatch = 32;
  std::array<std::uint64_t, kBatch> batch;
  const std::size_t count = placed.Count();
  hashes.Reset(count);
  // Stays zero as long as every coordinate is finite, and no sum of three is too large.
  double zero = 0.0;
  for (std::size_t begin = 0; begin < count; begin += kBatch) {
    const std::size_t size = std::min(kBatch, count - begin);
    for (std::size_t i = 0; i < size; ++i) {
      const KtPoint3 point = placed.At(begin + i);
      zero += (point.Get0() + point.Get1() + point.Get2()) * 0.0;
      batch[i] = PointIndex::Hash(point.Get0(), point.Get1());
      hashes.Prefetch(batch[i]);
    }
    for (const std::uint64_t hash : std::span(batch).first(size)) {
      if (!hashes.Add(hash)) {
        return false;
      }
    }
  }
  return zero == 0.0;
}

}  // namespace

bool areGivenChains(const PlacedCoords& placed, const std::vector<int>& indices) {
  // Kept from call to call, because small sets come by the thousand; given back after a huge one.
  constexpr std::size_t kKeptBytes = std::size_t{1} << 20U;
  thread_local DistinctHashes hashes;
  if (!areAscendingStrips(indices, placed.Count())) {
    return false;
  }
  const bool distinct = arePlacesDistinct(placed, hashes);
  if (hashes.CapacityBytes() > kKeptBytes) {
    hashes = DistinctHashes();
  }
  return distinct;
}
