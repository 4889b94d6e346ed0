// Edges in a row as polylines.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "app/linework/edge_pairing.h"
#include "app/linework/overlap_removal.h"

namespace dxf2d::linework {

// Polylines between the points of a graph, all in one list.
struct Chains {
  std::vector<PointNumber> points;
  // Where each polyline ends in `points`.
  std::vector<std::size_t> ends;
  // For each, whether it goes from its last point back to the first, which is then not repeated.
  std::vector<std::uint8_t> closed;
  // For each point, whether the segment from it to the next is another than the edges were before
  // they were cut.
  std::vector<std::uint8_t> changed;
};

// The polylines of edges that `partners` puts in a row, in the order of the first edge of each and
// in that edge's direction. A point between two edges of one source is left out, and so is one that
// lies on the line from the point before to the point after within `exactness`.
Chains chainEdges(std::span<const PlanPoint> points, const DistinctEdges& distinct,
                  std::span<const EndNumber> partners, double exactness);

}  // namespace dxf2d::linework
