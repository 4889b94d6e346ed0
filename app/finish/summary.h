// What the finishing pass did, in numbers.
#pragma once

#include <cstddef>

namespace dxf2d::finish {

// What the pass left out and made.
struct Summary {
  // Blocks that nothing inserts, and INSERTs of blocks that are not defined: nothing that shows.
  std::size_t unusedBlocks = 0;
  std::size_t emptyInserts = 0;
  // Polylines of fewer than two points.
  std::size_t shortPolylines = 0;
  // Entities that the scale or their placement takes beyond the range of numbers.
  std::size_t outOfRange = 0;
  // Polylines, lines and faces before, and polylines after joining.
  std::size_t piecesBefore = 0;
  std::size_t polylinesAfter = 0;
  std::size_t closedPolylines = 0;
};

}  // namespace dxf2d::finish
