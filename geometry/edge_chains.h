// Thins out the edges of an outline and joins them end to end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/edge.h"
#include "geometry/pair_rows.h"
#include "geometry/point_index.h"
#include "ktscene/kt_point3.h"
#include "platform/large_memory.h"

struct ChainScratch {
  // The edges at one point that may be left to chain, in edge order: ends[next .. end).
  struct Row {
    std::uint32_t next;
    std::uint32_t end;
  };
  // One end of an edge, kept with the point at the other, so that following a chain reads nothing
  // else.
  struct EdgeEnd {
    std::uint32_t edge;
    int other;
  };

  template <class T>
  using List = std::vector<T, LargeAllocator<T>>;

  PointIndex table;
  List<std::uint32_t> corners;     // the points that edges have
  List<std::uint32_t> planCorner;  // by point: one corner for each place in plan
  PairRows segments;
  List<char> used;     // by edge
  List<Row> rows;      // by point
  List<EdgeEnd> ends;  // two of each edge

  std::size_t CapacityBytes() const {
    return table.CapacityBytes() + segments.CapacityBytes() + used.capacity() +
           (corners.capacity() + planCorner.capacity()) * sizeof(std::uint32_t) +
           rows.capacity() * sizeof(Row) + ends.capacity() * sizeof(EdgeEnd);
  }
};

// Takes out of `edges` (in edge order, each once) those whose ends are the same place in plan and
// those that lie on the segment of an earlier edge. `points` are flat.
void removeCoincident(const std::vector<KtPoint3>& points, std::vector<Edge>& edges,
                      ChainScratch& scratch);

// Joins `edges` (in edge order) into chains of point numbers, each closed by -6, replacing
// `indices`. A chain begins with the first edge that is left and grows at its end, by the first
// edge left that has that point at either end; it never grows at its beginning, so at a branch the
// other edges begin chains of their own.
void chainEdges(const std::vector<Edge>& edges, std::size_t pointCount, std::vector<int>& indices,
                ChainScratch& scratch);
