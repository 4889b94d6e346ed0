// Groups what belongs to pairs of points by pair, in pair order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/large_memory.h"

// Compressed rows by the pair's first number: row i is entries[rowStart[i] .. rowStart[i + 1]),
// each entry the second number in the high half and a tag in the low half. Points come up near
// where they did before, and so do their rows: a hash table would scatter them.
class PairRows {
 public:
  // Replaces the content by what `forEach(visit)` visits, twice the same, as visit(first, second,
  // tag); `first` is less than `rowCount`.
  template <class ForEach>
  void Build(std::size_t rowCount, ForEach forEach) {
    // Counted into the row after the next, so that filling, which advances the row after, leaves
    // every row's start in its own place.
    rowStart_.assign(rowCount + 2, 0);
    forEach([&](std::uint32_t first, std::uint32_t /*second*/, std::uint32_t /*tag*/) {
      ++rowStart_[std::size_t{first} + 2];
    });
    for (std::size_t row = 2; row < rowStart_.size(); ++row) {
      rowStart_[row] += rowStart_[row - 1];
    }
    entries_.resize(rowStart_.back());
    forEach([&](std::uint32_t first, std::uint32_t second, std::uint32_t tag) {
      entries_[rowStart_[std::size_t{first} + 1]++] = std::uint64_t{second} << 32 | tag;
    });
    rowStart_.pop_back();
  }

  // Calls visit(first, second, entries) for every pair in order; the low halves of `entries` are
  // its tags, ascending, each once.
  template <class Visit>
  void ForEachPair(Visit visit) {
    for (std::size_t row = 0; row + 1 < rowStart_.size(); ++row) {
      const std::span<std::uint64_t> entries = SortedRow(row);
      for (std::size_t begin = 0; begin < entries.size();) {
        const std::uint64_t second = entries[begin] >> 32;
        std::size_t end = begin + 1;
        while (end < entries.size() && entries[end] >> 32 == second) {
          ++end;
        }
        visit(static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(second),
              entries.subspan(begin, end - begin));
        begin = end;
      }
    }
  }

  std::size_t CapacityBytes() const {
    return rowStart_.capacity() * sizeof(std::uint32_t) +
           entries_.capacity() * sizeof(std::uint64_t);
  }

 private:
  std::span<std::uint64_t> SortedRow(std::size_t row);

  std::vector<std::uint32_t, LargeAllocator<std::uint32_t>> rowStart_;
  std::vector<std::uint64_t, LargeAllocator<std::uint64_t>> entries_;
};

inline std::uint32_t tagOf(std::uint64_t entry) { return static_cast<std::uint32_t>(entry); }
