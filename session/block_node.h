// The record of one opened scene node.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

#include "platform/cstring.h"

struct BlockNode;

// A node's children in the order in which they were opened, linked through the records themselves,
// so that a million of them cost no list of their own.
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
  // `node` stands in no list yet.
  void push_back(BlockNode* node);

 private:
  BlockNode* first_ = nullptr;
  BlockNode* last_ = nullptr;
};

// Mirrors one node of the host's walk. Records live in the session's arena (session/block_tree.h),
// the texts they point to as well, and all end with the export.
struct BlockNode {
  // World matrix in KtMatrix order; elements 12 and 13 are the placement in plan.
  double matrix[16];
  // -1 until a material is received on this node or, before it was opened, on an ancestor.
  std::int32_t colorIndex = -1;
  // The number in the block's name: the node's own, or that of the node whose drawing it reuses.
  std::uint32_t blockNumber = 0;
  BlockNode* parent = nullptr;
  BlockNode* nextSibling = nullptr;
  ChildList children;
  // The nearest node, this one included, that has a real object id: the frame that holds the
  // geometry. Null when there is none.
  const BlockNode* frame = nullptr;
  // The host's identity strings, empty where it has none.
  std::u16string_view objectId;
  std::u16string_view graphicName;
  std::u16string_view realObjectId;
  // A block with this node's name was written during the walk, for it or for a node below it.
  bool hasGeometry = false;
  // Read when blocks are written, never set, without effect; kept for the records' readers.
  bool reservedFlag = false;

  // "GO_%d\n" of the block number. The line feed is part of the name: who writes it adds none.
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
