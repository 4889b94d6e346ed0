#include "session/block_node.h"

CString BlockNode::Name() const {
  CString name;
  name.Format(u"GO_%d\n", static_cast<int>(blockNumber));
  return name;
}

void BlockNode::MarkGeometry() {
  // A marked node's ancestors are marked already; stopping there keeps deep chains linear.
  for (BlockNode* node = this; node != nullptr && !node->hasGeometry; node = node->parent) {
    node->hasGeometry = true;
  }
}
