// Drawings that hold something of everything.
#pragma once

#include <string>

#include "app/drawing/drawing.h"

namespace dxf2d::release {

// Every kind of entity, two layers beside "0", a block in a block, and a text with letters beyond
// ASCII. Its extents are (-5, -2) to (120, 60).
Drawing sampleDrawing(Release release);

// What writeDrawing writes of it.
std::string written(const Drawing& drawing);

}  // namespace dxf2d::release
