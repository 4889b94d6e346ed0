// Counts what a drawing of this system holds, without reading it as a drawing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "app/drawing/drawing.h"

namespace dxf2d {

struct DrawingCounts {
  std::size_t polylines = 0;
  // Known of drawings that were read.
  std::size_t closed = 0;
  std::size_t vertices = 0;
  std::size_t texts = 0;
  // INSERTs of the ENTITIES section: the objects and labels that are placed.
  std::size_t placed = 0;
};

// The counts of the text of a drawing, of any release that this system writes. `threads` share the
// work.
DrawingCounts countDrawing(std::string_view drawing, std::size_t threads = 1);

// The same of one that was read.
DrawingCounts countDrawing(const Drawing& drawing);

}  // namespace dxf2d
