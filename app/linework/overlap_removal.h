// Leaves one of what lies on one another.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "app/linework/edges.h"

namespace dxf2d::linework {

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
// each once and in their order. Edges that only cross or touch are not cut. Overlaps are looked for
// among `candidates`, which are in order.
DistinctEdges removeOverlaps(const Graph& graph, std::span<const EdgeNumber> candidates,
                             double tolerance);

// Leaves each edge of `graph` once, whatever its direction, in order.
void removeDuplicates(Graph& graph);

}  // namespace dxf2d::linework
