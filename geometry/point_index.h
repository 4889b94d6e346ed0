// A hash table from points to numbers.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/large_memory.h"

// Open addressing over caller-owned points: the table holds numbers only, four bytes a slot, and
// asks the caller whether a number's point is the one looked for. The memory is kept from use to
// use.
class PointIndex {
 public:
  static constexpr std::uint32_t kNone = 0xffffffff;

  // Forgets everything and makes room for `count` points, at most three quarters full.
  void Reset(std::size_t count) {
    slots_.assign(std::bit_ceil(count + count / 3 + 1), kNone);
    mask_ = slots_.size() - 1;
  }

  static std::uint64_t Hash(double x, double y, double z) {
    return mix(mix(bitsOf(x), bitsOf(y)), bitsOf(z));
  }
  static std::uint64_t Hash(double x, double y) { return mix(bitsOf(x), bitsOf(y)); }

  static std::uint64_t Hash(std::uint64_t key) { return mix(key, key >> 32); }

  void Prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

  // Returns the number kept under `hash` for which `isSame(number)` holds; keeps `number` and
  // returns it when there is none.
  template <class IsSame>
  std::uint32_t FindOrKeep(std::uint64_t hash, std::uint32_t number, IsSame isSame) {
    return FindOrKeepIf(hash, number, isSame, [] { return true; });
  }

  // The same, but keeps `number` only if `isWorthIt()`, and returns kNone if not.
  template <class IsSame, class IsWorthIt>
  std::uint32_t FindOrKeepIf(std::uint64_t hash, std::uint32_t number, IsSame isSame,
                             IsWorthIt isWorthIt) {
    for (std::size_t slot = hash & mask_;; slot = (slot + 1) & mask_) {
      const std::uint32_t kept = slots_[slot];
      if (kept == kNone) {
        if (!isWorthIt()) {
          return kNone;
        }
        slots_[slot] = number;
        return number;
      }
      if (isSame(kept)) {
        return kept;
      }
    }
  }

  std::size_t CapacityBytes() const { return slots_.capacity() * sizeof(std::uint32_t); }

 private:
  // -0 equals 0 and must hash like it.
  static std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value + 0.0); }
  // A folded 64 x 64 bit product: every input bit reaches the low bits, which pick the slot.
  static std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a ^ 0x9e3779b97f4a7c15U) *
                         static_cast<Wide>(std::rotl(b, 32) ^ 0xd1b54a32d192ed03U);
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }

  std::vector<std::uint32_t, LargeAllocator<std::uint32_t>> slots_;
  std::size_t mask_ = 0;
};
