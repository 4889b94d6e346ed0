// Leaves few of many segments that lie on one another.
#pragma once

#include "app/linework/edges.h"

namespace dxf2d::linework {

// Takes out edges that others cover, where more than a few of about one length lie on one line and
// near one another: cutting each at the ends of all others would take time and room that grow with
// the square of their number. Where fewer meet nothing changes. What is taken out lies within an
// eighth of `tolerance` of the edges that cover it.
void thinCrowds(Graph& graph, double tolerance);

}  // namespace dxf2d::linework
