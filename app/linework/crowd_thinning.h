// Leaves few of many segments that lie on one another.
#pragma once

#include <span>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// Takes out edges that others cover, where more than a few of about one length lie on one line and
// near one another: cutting each at the ends of all others would take time and room that grow with
// the square of their number. Where fewer meet nothing changes. What is taken out lies within an
// eighth of `tolerance` of the edges that cover it. The edges of every crowd are among `suspects`,
// as CollinearGrid finds them. Returns whether anything was taken out.
bool thinCrowds(Graph& graph, std::span<const EdgeNumber> suspects, double tolerance);

}  // namespace dxf2d::linework
