// Reads drawings back: ASCII DXF of the releases that this system writes (AC1006, AC1015, AC1018).
#pragma once

#include <string>
#include <string_view>

#include "app/drawing/drawing.h"
#include "app/drawing/group_reader.h"

namespace dxf2d {

// Reads the file `path`. Throws DxfError when it cannot be read or is malformed, and LimitError
// when it is larger, deeper or, with its INSERTs expanded, longer than a picture is made of.
//
// - Sections BLOCKS and ENTITIES are read, of HEADER the version and the units, of TABLES the
// layers
//   and the dashed line type; all else is passed over.
// - Entities: LINE, POLYLINE, LWPOLYLINE, 3DFACE, CIRCLE, TEXT, INSERT. Others are left out and
//   counted.
// - The third coordinate is dropped, and so are thickness and extrusion.
// - A block name that stands twice is one block with the entities of both: a node with geometry
//   and with children of its own writes its block in two parts.
// - An INSERT may name a block that there is not; an object without geometry is placed so.
// - No block that the drawing shows inserts itself, however many blocks lie between.
Drawing readDrawing(const std::string& path);

// The same from a text in memory; `name` is what errors call the drawing.
Drawing parseDrawing(std::string_view text, std::string_view name);

// Notes on stderr which entities of the drawing `name` were left out, if any.
void noteSkipped(const std::string& name, const Drawing& drawing);

}  // namespace dxf2d
