// Loops that look up many items in a hash table.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>

namespace dxf2d {

// Calls visit(i, item) for i from 0 to count - 1, where `item` is makeItem(i), a struct with the
// field `hash`, which table.Prefetch takes. Items are made a batch ahead, so that the cache lines
// of `table` arrive while those of the batch before are probed: `visit` must not change what
// `makeItem` makes of later ones. Stops, and returns false, when `visit` returns false.
template <class Table, class MakeItem, class Visit>
bool forEachPrefetched(const Table& table, std::size_t count, MakeItem makeItem, Visit visit) {
  constexpr std::size_t kBatch = 32;
  std::array<std::array<std::invoke_result_t<MakeItem, std::size_t>, kBatch>, 2> batches;
  const auto make = [&](std::size_t begin) {
    auto& batch = batches[begin / kBatch % 2];
    const std::size_t size = std::min(kBatch, count - begin);
    for (std::size_t i = 0; i < size; ++i) {
      batch[i] = makeItem(begin + i);
      table.Prefetch(batch[i].hash);
    }
  };
  make(0);
  for (std::size_t begin = 0; begin < count; begin += kBatch) {
    if (count - begin > kBatch) {
      make(begin + kBatch);
    }
    const auto& batch = batches[begin / kBatch % 2];
    const std::size_t size = std::min(kBatch, count - begin);
    for (std::size_t i = 0; i < size; ++i) {
      if (!visit(begin + i, batch[i])) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace dxf2d
