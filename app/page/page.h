// Pages that show a drawing in a browser, in one file and without a network.
#pragma once

#include <cstddef>
#include <string>

#include "app/drawing/drawing.h"
#include "app/page/page_style.h"

namespace dxf2d::page {

struct Page {
  // The file's content, in UTF-8; empty when the drawing shows nothing.
  std::string html;
  // Entities with coordinates out of range, left out.
  std::size_t leftOut = 0;
};

// The page of what the ENTITIES section shows. Nothing that the drawing or the style says can
// become markup or script. Blocks are kept once, however often they are inserted; coordinates are
// exact to a 2^30th of their block's size. Throws LimitError beyond kMaxPageStrokes.
Page makePage(const Drawing& drawing, const PageStyle& style);

}  // namespace dxf2d::page
