// Writes shapes as blocks.
#pragma once

#include "geometry/indexed_outline.h"

namespace dxf2d {

struct BlockNode;
class DxfWriter;

// Writes the block of `node` with the outline, and marks the node and its ancestors. False, with
// nothing written, when either list of the outline is empty; true once it is written. Throws as
// writeIndexedOutline does, with what precedes the error in the file.
bool writeShapeBlock(DxfWriter& writer, BlockNode& node, const IndexedOutline& outline);

// Opens the block of a shape that writes its entities itself, and marks the node and its ancestors.
void beginShapeBlock(DxfWriter& writer, BlockNode& node);

}  // namespace dxf2d
