// Where the records of an export live.
#pragma once

#include <memory_resource>
#include <string_view>

#include "session/block_node.h"

// An arena for records and their texts: they are made one by one and end all at once, at any depth
// of tree.
class BlockTree {
 public:
  // Keeps `record` and returns its lasting place; it is attached to no parent yet.
  BlockNode* Keep(const BlockNode& record);
  // Keeps a copy of `text`.
  std::u16string_view Keep(std::u16string_view text);
  // Ends every record and text.
  void Clear() { arena_.release(); }

 private:
  std::pmr::monotonic_buffer_resource arena_;
};
