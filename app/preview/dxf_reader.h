// Reads drawings back: ASCII DXF of drawing version AC1006, as this system writes it.
#pragma once

#include <string>
#include <string_view>

#include "app/preview/drawing.h"
#include "app/preview/drawing_error.h"

// Reads the file `path`. Throws DxfError when it cannot be read or is malformed, and LimitError
// when it is larger, deeper or, with its INSERTs expanded, longer than a picture is made of.
//
// - Sections BLOCKS and ENTITIES are read, of HEADER the version; all else is passed over.
// - Entities: LINE, POLYLINE, 3DFACE, CIRCLE, TEXT, INSERT. Others are left out and counted.
// - The third coordinate is dropped, and so are thickness and extrusion.
// - A block name that stands twice is one block with the entities of both: a node with geometry
//   and with children of its own writes its block in two parts.
// - An INSERT may name a block that there is not; an object without geometry is placed so.
// - No block that the drawing shows inserts itself, however many blocks lie between.
Drawing readDrawing(const std::string& path);

// The same from a text in memory; `name` is what errors call the drawing.
Drawing parseDrawing(std::string_view text, std::string_view name);
