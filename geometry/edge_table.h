// The edges of a set of polygons, with the polygons that use each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geometry/edge.h"
#include "platform/large_memory.h"

// Buckets of polygon edges by their smaller point, in compressed rows: row i is
// entries[rowStart[i] .. rowStart[i + 1]), each entry the larger point in the high half and the
// polygon's number in the low half.
class EdgeTable {
 public:
  // `polygons` is flat, each polygon closed by -7 (what follows the last -7 is none). An edge of a
  // polygon joins neighbours in its list, the last to the first; those between a point and itself
  // or with an entry that names none of `pointCount` points are left out.
  void Build(const std::vector<int>& polygons, std::size_t pointCount);

  // Positions in the polygon list at which polygon f begins.
  const std::vector<std::uint32_t>& PolygonStarts() const { return polygonStarts_; }

  // Calls visit(edge, users) for every edge in edge order; `users` are entries whose low half is
  // the number of a polygon, ascending, each polygon once.
  template <class Visit>
  void ForEachEdge(Visit visit) {
    for (std::size_t row = 0; row + 1 < rowStart_.size(); ++row) {
      const std::span<std::uint64_t> entries = SortedRow(row);
      for (std::size_t begin = 0; begin < entries.size();) {
        const std::uint64_t second = entries[begin] >> 32;
        std::size_t end = begin + 1;
        while (end < entries.size() && entries[end] >> 32 == second) {
          ++end;
        }
        visit(Edge{static_cast<int>(row), static_cast<int>(second)},
              entries.subspan(begin, end - begin));
        begin = end;
      }
    }
  }

  std::size_t CapacityBytes() const;

 private:
  std::span<std::uint64_t> SortedRow(std::size_t row);

  std::vector<std::uint32_t> polygonStarts_;
  std::vector<std::uint32_t, LargeAllocator<std::uint32_t>> rowStart_;
  std::vector<std::uint64_t, LargeAllocator<std::uint64_t>> entries_;
};
