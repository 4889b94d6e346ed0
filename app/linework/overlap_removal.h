// Leaves one of what lies on one another.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// Calls a function with the shorter and the longer edge of each of some pairs.
using PairSource = std::function<void(const std::function<void(EdgeNumber, EdgeNumber)>&)>;

struct DistinctEdges {
  std::vector<Edge> edges;
  // For each edge a number that it shares with the others that were cut from the same straight
  // segment.
  std::vector<EdgeNumber> sources;
  // For each edge, whether it was cut from a longer one.
  std::vector<std::uint8_t> isPiece;
  bool hasCuts = false;
};

// The edges of `graph`, cut at the ends of edges that overlap them on one line within `tolerance`,
// each once and in their order. Edges that only cross or touch are not cut. `forEachPair`
// names every two that may overlap, as CollinearGrid does.
DistinctEdges removeOverlaps(const Graph& graph, const PairSource& forEachPair, double tolerance);

// Leaves each edge of `graph` once, whatever its direction, in order.
void removeDuplicates(Graph& graph);

}  // namespace dxf2d::linework
