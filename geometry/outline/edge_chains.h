// Removes the duplicate and degenerate edges of an outline and chains the others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/outline/csr_adjacency.h"
#include "geometry/outline/edge.h"
#include "geometry/outline/point_index.h"
#include "ktscene/kt_point3.h"
#include "platform/large_memory.h"

namespace dxf2d {

struct ChainScratch {
  // The edges at one point that have not been visited from there, in edge order: ends[next .. end).
  struct Row {
    std::uint32_t next;
    std::uint32_t end;
  };
  // One end of an edge, stored with the point at the other, which is all that following a chain
  // reads.
  struct EdgeEnd {
    std::uint32_t edge;
    int other;
  };

  template <class T>
  using List = std::vector<T, LargeAllocator<T>>;

  PointIndex table;
  List<std::uint32_t> corners;     // the points that edges use
  List<std::uint32_t> planCorner;  // by point: one corner for each place in plan
  CsrAdjacency segments;
  List<char> used;     // by edge
  List<Row> rows;      // by point
  List<EdgeEnd> ends;  // two for each edge

  std::size_t CapacityBytes() const {
    return table.CapacityBytes() + segments.CapacityBytes() + used.capacity() +
           (corners.capacity() + planCorner.capacity()) * sizeof(std::uint32_t) +
           rows.capacity() * sizeof(Row) + ends.capacity() * sizeof(EdgeEnd);
  }
};

// Removes from `edges` (in edge order, each once, all of existing points) the degenerate ones,
// whose ends are at the same place in plan, and the duplicates, which coincide with an earlier
// edge. `points` are flat.
void removeCoincident(const std::vector<KtPoint3>& points, std::vector<Edge>& edges,
                      ChainScratch& scratch);

// Joins `edges` (in edge order, all between two of `pointCount` points) into chains of point
// numbers, each ended by KtRunCode::kLineStrip, replacing `indices`. A chain begins with the first
// unused edge and grows at its end, by the first unused edge that has that point at either end. It
// never grows at its beginning, so at a branch the other edges begin chains of their own.
void chainEdges(const std::vector<Edge>& edges, std::size_t pointCount, std::vector<int>& indices,
                ChainScratch& scratch);

}  // namespace dxf2d
