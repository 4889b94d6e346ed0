#include "session/block_tree.h"

#include <algorithm>
#include <new>
#include <type_traits>

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
