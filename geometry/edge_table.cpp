#include "geometry/edge_table.h"

#include <algorithm>
#include <utility>

#include "geometry/index_codes.h"

namespace {

// Calls visit(smaller, larger, polygon) for every valid edge of every polygon, in list order.
template <class Visit>
void forEachPolygonEdge(const std::vector<int>& polygons, std::size_t pointCount, Visit visit) {
  std::uint32_t polygon = 0;
  std::size_t begin = 0;
  for (std::size_t k = 0; k < polygons.size(); ++k) {
    if (polygons[k] != kPolygonCode) {
      continue;
    }
    for (std::size_t p = begin; p < k; ++p) {
      const int a = polygons[p];
      const int b = polygons[p + 1 < k ? p + 1 : begin];
      if (a != b && namesPoint(a, pointCount) && namesPoint(b, pointCount)) {
        visit(std::min(a, b), std::max(a, b), polygon);
      }
    }
    begin = k + 1;
    ++polygon;
  }
}

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

void EdgeTable::Build(const std::vector<int>& polygons, std::size_t pointCount) {
  polygonStarts_.clear();
  polygonStarts_.reserve(
      static_cast<std::size_t>(std::count(polygons.begin(), polygons.end(), kPolygonCode)));
  std::uint32_t begin = 0;
  for (std::uint32_t k = 0; k < polygons.size(); ++k) {
    if (polygons[k] == kPolygonCode) {
      polygonStarts_.push_back(begin);
      begin = k + 1;
    }
  }
  // Counted into the row after the next, so that filling, which advances the row after, leaves
  // every row's start in its own place.
  rowStart_.assign(pointCount + 2, 0);
  forEachPolygonEdge(polygons, pointCount, [&](int first, int /*second*/, std::uint32_t /*f*/) {
    ++rowStart_[static_cast<std::size_t>(first) + 2];
  });
  for (std::size_t row = 2; row < rowStart_.size(); ++row) {
    rowStart_[row] += rowStart_[row - 1];
  }
  entries_.resize(rowStart_.back());
  forEachPolygonEdge(polygons, pointCount, [&](int first, int second, std::uint32_t polygon) {
    entries_[rowStart_[static_cast<std::size_t>(first) + 1]++] =
        static_cast<std::uint64_t>(second) << 32 | polygon;
  });
  rowStart_.pop_back();
}

std::span<std::uint64_t> EdgeTable::SortedRow(std::size_t row) {
  const std::span<std::uint64_t> entries(entries_.data() + rowStart_[row],
                                         rowStart_[row + 1] - rowStart_[row]);
  sortEntries(entries);
  // A polygon that runs along an edge twice uses it once.
  const auto end = std::unique(entries.begin(), entries.end());
  return entries.first(static_cast<std::size_t>(end - entries.begin()));
}

std::size_t EdgeTable::CapacityBytes() const {
  return (polygonStarts_.capacity() + rowStart_.capacity()) * sizeof(std::uint32_t) +
         entries_.capacity() * sizeof(std::uint64_t);
}
