// What the finishing pass did, in numbers.
#pragma once

#include <cstddef>

#include "app/finish/drawing_pruning.h"

namespace dxf2d::finish {

// What the pass left out and made.
struct Summary {
  PruningCounts pruned;
  // Entities that the scale or their placement takes beyond the range of numbers.
  std::size_t outOfRange = 0;
  // Polylines, lines and faces before, and polylines after joining.
  std::size_t piecesBefore = 0;
  std::size_t polylinesAfter = 0;
  std::size_t closedPolylines = 0;
};

}  // namespace dxf2d::finish
