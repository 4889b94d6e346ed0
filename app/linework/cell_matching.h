// Finds what stands in the same cells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// An edge and a cell that it is in, or is looked for in. Cells are known by keys, of which those of
// cells in one place should be near one another; two cells may have the same one.
struct CellEntry {
  std::uint32_t cell;
  EdgeNumber edge;
};

// How many edges are in each cell: none, one, two or more. Cells may share a count, which is then
// too high.
class CellCounts {
 public:
  // Stands for more, too.
  static constexpr unsigned kMost = 3;

  explicit CellCounts(std::size_t edges);

  void Add(std::uint32_t cell) {
    std::uint8_t& counts = counts_[PlaceOf(cell)];
    const unsigned shift = ShiftOf(cell);
    if ((counts >> shift & kMost) < kMost) {
      counts = static_cast<std::uint8_t>(counts + (1U << shift));
    }
  }
  unsigned Of(std::uint32_t cell) const { return counts_[PlaceOf(cell)] >> ShiftOf(cell) & kMost; }

 private:
  // Four counts of two bits share a byte. Keys that are near one another have theirs so, too: most
  // steps stay in the cache.
  std::size_t PlaceOf(std::uint32_t cell) const { return cell >> keyBits_ >> 2U; }
  unsigned ShiftOf(std::uint32_t cell) const { return 2U * (cell >> keyBits_ & 3U); }

  std::vector<std::uint8_t> counts_;
  // Low bits of keys that share a count.
  unsigned keyBits_;
};

// Sorts by cell; entries of one cell keep their order. By counting, 11 bits at a time: everything
// is read and written in a row, where a table of cells would miss the cache at each step.
void sortByCell(std::vector<CellEntry>& entries);

// Calls visit(query's edge, entry's edge) for each query and entry of the same cell. Both are
// sorted.
template <typename Visit>
void forEachMatch(const std::vector<CellEntry>& queries, const std::vector<CellEntry>& entries,
                  const Visit& visit) {
  auto first = entries.begin();
  for (const CellEntry& query : queries) {
    while (first != entries.end() && first->cell < query.cell) {
      ++first;
    }
    for (auto entry = first; entry != entries.end() && entry->cell == query.cell; ++entry) {
      visit(query.edge, entry->edge);
    }
  }
}

}  // namespace dxf2d::linework
