#include "shapes/shape_block.h"

#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "session/record/block_node.h"

namespace dxf2d {

void beginShapeBlock(DxfWriter& writer, BlockNode& node) {
  writer.WriteBlockHeader(node);
  node.MarkGeometry();
}

bool writeShapeBlock(DxfWriter& writer, BlockNode& node, const IndexedOutline& outline) {
  if (outline.points.empty() || outline.indices.empty()) {
    return false;
  }
  const FlushGuard flush(writer);
  beginShapeBlock(writer, node);
  writeIndexedOutline(writer, node, outline);
  writer.WriteBlockEnd();
  return true;
}

}  // namespace dxf2d
