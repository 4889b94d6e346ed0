// Counts what a drawing of this system holds, without reading it as a drawing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct DrawingCounts {
  std::size_t polylines = 0;
  std::size_t vertices = 0;
  std::size_t texts = 0;
  // INSERTs of the ENTITIES section: the objects and labels that are placed.
  std::size_t placed = 0;
};

// The counts of a drawing in memory.
DrawingCounts countDrawing(std::string_view drawing);
