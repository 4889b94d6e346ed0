#include "app/linework/cell_matching.h"

#include <algorithm>
#include <array>
#include <bit>

namespace dxf2d::linework {

namespace {

constexpr unsigned kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

std::size_t digitOf(std::uint32_t cell, unsigned shift) { return (cell >> shift) % kDigits; }

void sortByDigit(const std::vector<CellEntry>& from, std::vector<CellEntry>& to, unsigned shift) {
  std::array<std::size_t, kDigits> places{};
  for (const CellEntry& entry : from) {
    ++places[digitOf(entry.cell, shift)];
  }
  std::size_t before = 0;
  for (std::size_t& place : places) {
    const std::size_t count = place;
    place = before;
    before += count;
  }
  for (const CellEntry& entry : from) {
    to[places[digitOf(entry.cell, shift)]++] = entry;
  }
}

}  // namespace

CellCounts::CellCounts(std::size_t edges) {
  // Four bytes an edge, which is several times the counts that are not 0.
  constexpr std::size_t kLeastBytes = 64;
  constexpr std::size_t kMostBytes = std::size_t{1} << 30U;
  const std::size_t bytes = std::bit_ceil(std::clamp(4 * edges, kLeastBytes, kMostBytes));
  counts_.assign(bytes, 0);
  keyBits_ = 30U - static_cast<unsigned>(std::countr_zero(bytes));
}

void sortByCell(std::vector<CellEntry>& entries) {
  constexpr unsigned kBits = 32;
  std::vector<CellEntry> sorted(entries.size());
  for (unsigned shift = 0; shift < kBits; shift += kDigitBits) {
    sortByDigit(entries, sorted, shift);
    entries.swap(sorted);
  }
}

}  // namespace dxf2d::linework
