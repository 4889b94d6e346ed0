// The record of one opened scene node, and the arena that holds a tree of records.
#pragma once

#include <cstdint>
#include <iterator>
#include <memory_resource>
#include <string_view>

#include "ktscene/kt_matrix.h"
#include "platform/cstring.h"

namespace dxf2d {

struct BlockNode;

// A node's children in the order in which they were opened. Linked through the records themselves,
// so that a million children need no list of their own.
class ChildList {
 public:
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = BlockNode*;
    using difference_type = std::ptrdiff_t;
    using pointer = BlockNode**;
    using reference = BlockNode*;

    explicit Iterator(BlockNode* node = nullptr) : node_(node) {}
    BlockNode* operator*() const { return node_; }
    Iterator& operator++();
    Iterator operator++(int) {
      Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(Iterator a, Iterator b) { return a.node_ == b.node_; }

   private:
    BlockNode* node_;
  };

  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(); }
  bool empty() const { return first_ == nullptr; }
  BlockNode* front() const { return first_; }
  // `node` must not be in a list already.
  void push_back(BlockNode* node);

 private:
  BlockNode* first_ = nullptr;
  BlockNode* last_ = nullptr;
};

// Mirrors one node of the host's walk. Records live in the session's BlockTree, as do the texts
// that they point to, and are freed together when the export ends.
struct BlockNode {
  // The world matrix; elements 12 and 13 are the placement in plan.
  KtMatrix matrix;
  // -1 until a material is received on this node or, before it was opened, on an ancestor.
  std::int32_t colorIndex = -1;
  // The number in the block's name: the node's own, or that of the node whose drawing it reuses.
  std::uint32_t blockNumber = 0;
  BlockNode* parent = nullptr;
  BlockNode* nextSibling = nullptr;
  ChildList children;
  // The nearest node, this one included, that has a real object id: geometry is drawn in its
  // coordinate system. Null if there is none.
  const BlockNode* frame = nullptr;
  // The host's identity strings, empty where it has none.
  std::u16string_view objectId;
  std::u16string_view graphicName;
  std::u16string_view realObjectId;
  // A block with this node's name was written during the walk, for it or for a node below it.
  bool hasGeometry = false;
  // Always false: nothing sets it, nothing reads it, and no drawing depends on it. Part of the
  // record's layout for those who inspect records in a debugger.
  bool reservedFlag = false;

  // "GO_%d\n" of the block number. The line feed is part of the name, so a name is written without
  // adding one.
  CString Name() const;

  // Sets `hasGeometry` here and on every ancestor.
  void MarkGeometry();
};

inline ChildList::Iterator& ChildList::Iterator::operator++() {
  node_ = node_->nextSibling;
  return *this;
}

inline void ChildList::push_back(BlockNode* node) {
  (last_ != nullptr ? last_->nextSibling : first_) = node;
  last_ = node;
}

// An arena for records and their texts: they are created one by one and freed all at once, at any
// depth of the tree.
class BlockTree {
 public:
  // Stores a copy of `record` and returns its address, which stays valid until Clear. The copy is
  // not attached to a parent.
  BlockNode* Keep(const BlockNode& record);
  // Stores a copy of `text`.
  std::u16string_view Keep(std::u16string_view text);
  // Frees every record and text.
  void Clear() { arena_.release(); }

 private:
  std::pmr::monotonic_buffer_resource arena_;
};

}  // namespace dxf2d
