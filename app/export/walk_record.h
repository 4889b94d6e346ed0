// Which nodes of a scene the plug-in drew as instances of earlier ones.
#pragma once

#include <cstdint>
#include <vector>

#include "ktscene/kt_traverser.h"

namespace dxf2d {

// A traverser with the callbacks of `traverser` that notes what the plug-in takes as an instance:
// for each node, in the order of the walk, whether it did. One walk at a time, since callbacks
// carry no context; takenInstances returns the list of the last one.
KtTraverser recordingTraverser(const KtTraverser& traverser);
const std::vector<std::uint8_t>& takenInstances();
// Whether the plug-in has begun the last one, that is, returned true from slot 19.
bool hasWalkBegun();

}  // namespace dxf2d
