// Loops that look up many items in a hash table.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>

namespace dxf2d {

// Calls visit(i, item) for i from 0 to count - 1, where `item` is makeItem(i), a struct with the
// field `hash`, which table.Prefetch takes. Items are made a batch ahead, so that the cache lines
// of `table` arrive while others are probed. Stops, and returns false, when `visit` returns false.
template <class Table, class MakeItem, class Visit>
bool forEachPrefetched(const Table& table, std::size_t count, MakeItem makeItem, Visit visit) {
  constexpr std::size_t kBatch = 32;
  std::array<std::invoke_result_t<MakeItem, std::size_t>, kBatch> batch;
  for (std::size_t begin = 0; begin < count; begin += kBatch) {
    const std::size_t size = std::min(kBatch, count - begin);
    for (std::size_t i = 0; i < size; ++i) {
      batch[i] = makeItem(begin + i);
      table.Prefetch(batch[i].hash);
    }
    for (std::size_t i = 0; i < size; ++i) {
      if (!visit(begin + i, batch[i])) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace dxf2d
