#include "session/record/block_node.h"

#include <algorithm>
#include <new>
#include <type_traits>

namespace dxf2d {

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

// The arena runs no destructors.
static_assert(std::is_trivially_destructible_v<BlockNode>);

BlockNode* BlockTree::Keep(const BlockNode& record) {
  return new (arena_.allocate(sizeof(BlockNode), alignof(BlockNode))) BlockNode(record);
}

std::u16string_view BlockTree::Keep(std::u16string_view text) {
  if (text.empty()) {
    return {};
  }
  auto* copy =
      static_cast<char16_t*>(arena_.allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(text.begin(), text.end(), copy);
  return {copy, text.size()};
}

}  // namespace dxf2d
