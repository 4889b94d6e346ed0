// Sorts entries into rows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

// Where each row begins, and the end of the last one.
using RowStarts = std::vector<Index, LargeAllocator<Index>>;

// Turns the number of entries that each stretch has in each row into the place of the first of
// them, and writes where the rows begin. Returns the number of all entries.
inline std::size_t findPlaces(std::vector<LargeArray<Index>>& places, std::size_t threads,
                              RowStarts& starts) {
  const Blocks blocks(starts.size() - 1, threads);
  std::vector<std::size_t> sums(blocks.Count() + 1);
  blocks.Run([&](std::size_t number, const Block& rows) {
    std::size_t sum = 0;
    for (const LargeArray<Index>& own : places) {
      sum = std::accumulate(own.begin() + rows.begin, own.begin() + rows.end, sum);
    }
    sums[number + 1] = sum;
  });
  std::partial_sum(sums.begin(), sums.end(), sums.begin());
  blocks.Run([&](std::size_t number, const Block& rows) {
    auto next = static_cast<Index>(sums[number]);
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
      starts[row] = next;
      for (LargeArray<Index>& own : places) {
        next += std::exchange(own[row], next);
      }
    }
  });
  starts.back() = static_cast<Index>(sums.back());
  return sums.back();
}

// Sorts into `rowCount` compressed rows, row i being entries[starts[i]] to entries[starts[i + 1]],
// what forEach(block, visit) passes to visit(row, entry) for the blocks of a list of `size` things;
// in each row in order of the list. Each of `threads` has a stretch of the list, which `forEach` is
// called for twice.
template <class Entry, class ForEach>
void fillRows(std::size_t rowCount, std::size_t size, std::size_t threads, ForEach forEach,
              RowStarts& starts, LargeArray<Entry>& entries) {
  // Each takes a list of all rows.
  constexpr std::size_t kMostStretches = 8;
  const Blocks stretches = Blocks::OneForEach(size, std::min(threads, kMostStretches));
  std::vector<LargeArray<Index>> places(stretches.Count());
  stretches.Run([&](std::size_t number, const Block& block) {
    LargeArray<Index> own(rowCount);
    std::fill(own.begin(), own.end(), Index{0});
    forEach(block, [&](Index row, const Entry& /*entry*/) { ++own[row]; });
    places[number] = std::move(own);
  });
  starts.resize(rowCount + 1);
  entries = LargeArray<Entry>(findPlaces(places, threads, starts));
  stretches.Run([&](std::size_t number, const Block& block) {
    Index* const own = places[number].data();
    forEach(block, [&](Index row, const Entry& entry) { entries[own[row]++] = entry; });
  });
}

}  // namespace dxf2d::mesh
