// The edges of a set of polygons, with the polygons that use each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geometry/edge.h"
#include "geometry/pair_rows.h"

class EdgeTable {
 public:
  // `polygons` is flat, each polygon closed by -7 (what follows the last -7 is none). An edge of a
  // polygon joins neighbours in its list, the last to the first; those between a point and itself
  // or with an entry that names none of `pointCount` points are left out.
  void Build(const std::vector<int>& polygons, std::size_t pointCount);

  // Positions in the polygon list at which polygon f begins.
  const std::vector<std::uint32_t>& PolygonStarts() const { return starts_; }

  // Calls visit(edge, users) for every edge in edge order; the low halves of `users` (tagOf) are
  // the numbers of its polygons, ascending. A polygon that runs along an edge twice uses it once.
  template <class Visit>
  void ForEachEdge(Visit visit) {
    rows_.ForEachPair(
        [&](std::uint32_t first, std::uint32_t second, std::span<const std::uint64_t> users) {
          visit(Edge{static_cast<int>(first), static_cast<int>(second)}, users);
        });
  }

  std::size_t CapacityBytes() const {
    return starts_.capacity() * sizeof(std::uint32_t) + rows_.CapacityBytes();
  }

 private:
  std::vector<std::uint32_t> starts_;
  PairRows rows_;
};
