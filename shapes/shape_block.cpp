#include "shapes/shape_block.h"

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "session/block_node.h"

void beginShapeBlock(DxfWriter& writer, BlockNode& node) {
  writer.WriteBlockHeader(node);
  node.MarkGeometry();
}

bool writeShapeBlock(DxfWriter& writer, BlockNode& node, const IndexedOutline& outline) {
  if (outline.points.empty() || outline.indices.empty()) {
    return false;
  }
  return flushed(writer, [&](DxfWriter& open) {
    beginShapeBlock(open, node);
    writeIndexedOutline(open, node, outline);
    open.WriteBlockEnd();
    return true;
  });
}
