// Groups the tags of point pairs by pair, in pair order.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d {

// An adjacency in compressed sparse rows, one row for each first number of a pair: row i is
// entries[rowStart[i] .. rowStart[i + 1]), each entry the second number in the high half and a tag
// in the low half. Points that follow each other in the input have nearby numbers, and so nearby
// rows: a hash table would scatter them.
class CsrAdjacency {
 public:
  // Replaces the content by what forEach(rows, visit) passes to visit(first, second, tag), at least
  // all whose `first` is one of the rows. `forEach` is called twice by each of `threads` threads,
  // each of which keeps a share of the rows, and must visit the same each time; every `first` must
  // be less than `rowCount`.
  template <class ForEach>
  void Build(std::size_t rowCount, std::size_t threads, ForEach forEach) {
    // Calls visit for all that is in the rows of one of the threads.
    const auto forEachIn = [&](std::size_t share, auto visit) {
      const std::size_t begin = rowCount / threads * share;
      const std::size_t end = share + 1 == threads ? rowCount : begin + rowCount / threads;
      forEach(Block{begin, end}, [&](std::uint32_t first, std::uint32_t second, std::uint32_t tag) {
        assert(first < rowCount);
        if (first >= begin && first < end) {
          visit(first, second, tag);
        }
      });
    };
    // Counted into the row after the next, so that filling, which advances the row after, leaves
    // every row's start in its own place.
    rowStart_.assign(rowCount + 2, 0);
    runInParallel(threads, threads, [&](std::size_t share) {
      forEachIn(share, [&](std::uint32_t first, std::uint32_t /*second*/, std::uint32_t /*tag*/) {
        ++rowStart_[std::size_t{first} + 2];
      });
    });
    for (std::size_t row = 2; row < rowStart_.size(); ++row) {
      rowStart_[row] += rowStart_[row - 1];
    }
    entries_.resize(rowStart_.back());
    runInParallel(threads, threads, [&](std::size_t share) {
      forEachIn(share, [&](std::uint32_t first, std::uint32_t second, std::uint32_t tag) {
        assert(rowStart_[std::size_t{first} + 1] < entries_.size());
        entries_[rowStart_[std::size_t{first} + 1]++] = std::uint64_t{second} << 32 | tag;
      });
    });
    assert(rowStart_[rowCount] == entries_.size());
    rowStart_.pop_back();
  }

  std::size_t RowCount() const { return rowStart_.empty() ? 0 : rowStart_.size() - 1; }

  // Calls visit(first, second, entries) for every pair of the rows in order; the low halves of
  // `entries` (tagOf) are its tags, ascending, each once. Threads may go through separate rows at a
  // time.
  template <class Visit>
  void ForEachPair(Block rows, Visit visit) {
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
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

}  // namespace dxf2d
