// Writes whole DXF drawings of releases 2000 (AC1015) and 2004 (AC1018): with handles, classes,
// tables and objects, as programs that check a drawing want them.
#pragma once

#include "app/drawing/drawing.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

// Writes `drawing`, of release kR2000 or kR2004, through `sink`, whose exceptions pass through.
// The bytes depend on the drawing alone.
//
// - Every coordinate is finite, and the drawing has passed checkNesting.
// - Names of layers and blocks are legal in a drawing and differ in more than case.
// - Texts and names are ASCII without control characters, with \U+XXXX for other characters.
// - Every block that an INSERT names is defined.
// - True colors are written in release kR2004 and left out in kR2000, which has none.
void writeDrawing(const Drawing& drawing, const ByteSink& sink);

}  // namespace dxf2d::release
