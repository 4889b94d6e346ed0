// Leaves out of a drawing what it does not show.
#pragma once

#include <cstddef>

#include "app/drawing/drawing.h"

namespace dxf2d::finish {

// What does not show.
struct PruningCounts {
  // Blocks that nothing inserts, but those of the format itself.
  std::size_t unusedBlocks = 0;
  // INSERTs of blocks that are not defined.
  std::size_t emptyInserts = 0;
  // Polylines of fewer than two points.
  std::size_t shortPolylines = 0;
};

// Takes out polylines of fewer than two points, INSERTs of blocks that are not defined, and blocks
// that nothing shown inserts. The others keep their order and are numbered anew.
PruningCounts pruneDrawing(Drawing& drawing);

// Takes out entities with coordinates or sizes that are not finite; returns how many.
std::size_t dropOutOfRange(Drawing& drawing);

}  // namespace dxf2d::finish
