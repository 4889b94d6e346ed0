// A hash table from hashes to numbers.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "platform/large_memory.h"

namespace dxf2d::mesh {

inline constexpr Index kNone = 0xffffffff;

// Every input bit reaches the low bits, which pick the slot (the finalizer of splitmix64).
inline std::uint32_t mixed(std::uint64_t key) {
  key = (key ^ (key >> 30U)) * 0xbf58476d1ce4e5b9U;
  key = (key ^ (key >> 27U)) * 0x94d049bb133111ebU;
  return static_cast<std::uint32_t>(key ^ (key >> 31U));
}

// Open addressing over things that the caller owns: a slot holds a thing's hash and number, and the
// caller says whether the number is the one looked for. At most two thirds full; grows by itself.
class SlotTable {
 public:
  explicit SlotTable(std::size_t expected) { Allocate(expected + expected / 2); }

  void Prefetch(std::uint32_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

  // Returns the first number kept under `hash`, in the order in which they were, for which
  // isSame(number) holds, or kNone.
  template <class IsSame>
  Index Find(std::uint32_t hash, IsSame isSame) const {
    for (std::size_t i = hash & mask_; slots_[i].number != kNone; i = (i + 1) & mask_) {
      if (slots_[i].hash == hash && isSame(slots_[i].number)) {
        return slots_[i].number;
      }
    }
    return kNone;
  }

  // Keeps `number` under `hash`, behind what is kept there.
  void Keep(std::uint32_t hash, Index number) {
    MakeRoom();
    Put({hash, number});
    ++count_;
  }

  // Find(hash, isSame); where that is kNone, Keep(hash, number) as well.
  template <class IsSame>
  Index FindOrInsert(std::uint32_t hash, Index number, IsSame isSame) {
    MakeRoom();
    std::size_t i = hash & mask_;
    for (; slots_[i].number != kNone; i = (i + 1) & mask_) {
      if (slots_[i].hash == hash && isSame(slots_[i].number)) {
        return slots_[i].number;
      }
    }
    slots_[i] = {hash, number};
    ++count_;
    return kNone;
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    Index number = kNone;
  };

  void Allocate(std::size_t count) {
    constexpr std::size_t kLeastSlots = 16;
    slots_.assign(std::bit_ceil(count < kLeastSlots ? kLeastSlots : count), Slot{});
    mask_ = slots_.size() - 1;
  }
  // For one more.
  void MakeRoom() {
    if (3 * (count_ + 1) > 2 * slots_.size()) {
      Grow();
    }
  }
  void Put(const Slot& slot) {
    std::size_t i = slot.hash & mask_;
    while (slots_[i].number != kNone) {
      i = (i + 1) & mask_;
    }
    slots_[i] = slot;
  }
  void Grow() {
    std::vector<Slot, LargeAllocator<Slot>> before;
    before.swap(slots_);
    Allocate(before.size() * 2);
    // From a free slot on, so that numbers kept under one hash stay in order.
    std::size_t first = 0;
    while (before[first].number != kNone) {
      ++first;
    }
    for (std::size_t i = 0; i < before.size(); ++i) {
      const Slot& slot = before[(first + i) & (before.size() - 1)];
      if (slot.number != kNone) {
        Put(slot);
      }
    }
  }

  std::vector<Slot, LargeAllocator<Slot>> slots_;
  std::size_t mask_ = 0;
  std::size_t count_ = 0;
};

}  // namespace dxf2d::mesh
