// Which edges may overlap others that they did not overlap before.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "app/linework/edges.h"

namespace dxf2d::linework {

// The edges of `graph` that come within `tolerance` of one that is marked in `changed`, those
// themselves, and some others, in their order.
std::vector<EdgeNumber> edgesNearChanges(const Graph& graph, std::span<const std::uint8_t> changed,
                                         double tolerance);

}  // namespace dxf2d::linework
