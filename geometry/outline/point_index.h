// A hash table from points to numbers.
#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/large_memory.h"

namespace dxf2d {

// Open addressing over points that the caller owns: the table holds their numbers only, four bytes
// a slot, and calls back to compare points. The memory is kept from use to use.
class PointIndex {
 public:
  static constexpr std::uint32_t kNone = 0xffffffff;

  // Empties the table and makes room for `count` points, at most three quarters full.
  void Reset(std::size_t count) {
    slots_.assign(std::bit_ceil(count + count / 3 + 1), kNone);
    mask_ = slots_.size() - 1;
  }

  static std::uint64_t Hash(double x, double y, double z) {
    return Mix(Mix(BitsOf(x), BitsOf(y)), BitsOf(z));
  }
  static std::uint64_t Hash(double x, double y) { return Mix(BitsOf(x), BitsOf(y)); }

  void Prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

  // Makes room for twice as many points as there are, 0 to count - 1; hashOf(number) is the hash
  // that each was stored under.
  template <class HashOf>
  void Grow(std::uint32_t count, HashOf hashOf) {
    Reset(2 * std::size_t{count});
    for (std::uint32_t number = 0; number < count; ++number) {
      FindOrInsert(hashOf(number), number, [](std::uint32_t) { return false; });
    }
  }
  // Whether `count` points are so many that looking them up begins to take long.
  bool IsCrowdedBy(std::size_t count) const { return count > slots_.size() / 2; }

  // Returns the number stored under `hash` for which isSame(number) holds, kNone if there is none.
  template <class IsSame>
  std::uint32_t Find(std::uint64_t hash, IsSame isSame) const {
    for (std::size_t slot = hash & mask_;; slot = (slot + 1) & mask_) {
      if (slots_[slot] == kNone || isSame(slots_[slot])) {
        return slots_[slot];
      }
    }
  }

  // Returns the number stored under `hash` for which isSame(number) holds; if there is none, stores
  // `number` and returns it. The table must have been reset, and must not be full.
  template <class IsSame>
  std::uint32_t FindOrInsert(std::uint64_t hash, std::uint32_t number, IsSame isSame) {
    return FindOrInsertIf(hash, number, isSame, [] { return true; });
  }

  // The same, but if there is none and mayInsert() does not hold, returns kNone.
  template <class IsSame, class MayInsert>
  std::uint32_t FindOrInsertIf(std::uint64_t hash, std::uint32_t number, IsSame isSame,
                               MayInsert mayInsert) {
    assert(number != kNone && number < slots_.size());
    for (std::size_t slot = hash & mask_;; slot = (slot + 1) & mask_) {
      const std::uint32_t stored = slots_[slot];
      if (stored == kNone) {
        if (!mayInsert()) {
          return kNone;
        }
        slots_[slot] = number;
        return number;
      }
      if (isSame(stored)) {
        return stored;
      }
    }
  }

  std::size_t CapacityBytes() const { return slots_.capacity() * sizeof(std::uint32_t); }

 private:
  // -0 equals 0 and must hash like it.
  static std::uint64_t BitsOf(double value) { return std::bit_cast<std::uint64_t>(value + 0.0); }
  // A folded 64 x 64 bit product: every input bit reaches the low bits, which choose the slot.
  static std::uint64_t Mix(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a ^ 0x9e3779b97f4a7c15U) *
                         static_cast<Wide>(std::rotl(b, 32) ^ 0xd1b54a32d192ed03U);
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }

  std::vector<std::uint32_t, LargeAllocator<std::uint32_t>> slots_;
  std::size_t mask_ = 0;
};

}  // namespace dxf2d
