#include "geometry/outline/csr_adjacency.h"

#include <algorithm>

namespace dxf2d {

namespace {

// Short rows, which nearly all are, sort fastest by insertion.
void sortEntries(std::span<std::uint64_t> entries) {
  constexpr std::size_t kShortRow = 24;
  if (entries.size() > kShortRow) {
    std::sort(entries.begin(), entries.end());
    return;
  }
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const std::uint64_t entry = entries[i];
    std::size_t place = i;
    for (; place > 0 && entries[place - 1] > entry; --place) {
      entries[place] = entries[place - 1];
    }
    entries[place] = entry;
  }
}

}  // namespace

std::span<std::uint64_t> CsrAdjacency::SortedRow(std::size_t row) {
  const std::span<std::uint64_t> entries(entries_.data() + rowStart_[row],
                                         rowStart_[row + 1] - rowStart_[row]);
  sortEntries(entries);
  const auto end = std::unique(entries.begin(), entries.end());
  return entries.first(static_cast<std::size_t>(end - entries.begin()));
}

}  // namespace dxf2d
