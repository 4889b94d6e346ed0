// Finds segments that run along one another.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// Calls visit(shorter, longer) for every two of `edges` of `graph` that may overlap on one line,
// and for some others; for a pair possibly more than once. Two edges overlap when both ends of the
// shorter lie within `tolerance` of the line through the longer. Edges shorter than eight
// tolerances are left out: they have no direction to speak of.
//
// Edges are sorted into narrow classes of directions, and in each by length into levels. A level
// has columns as wide as its edges are long. In a column, edges are found
// - by an edge that is not much shorter, by where their lines pass the middle of the column: only
//   lines that are nearly the same agree in that;
// - by a much shorter one, whose own line is too vague for that, by rows a 64th as high.
void forEachCollinearPair(const Graph& graph, std::span<const EdgeNumber> edges, double tolerance,
                          const std::function<void(EdgeNumber, EdgeNumber)>& visit);

}  // namespace dxf2d::linework
