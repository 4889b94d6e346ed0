// The module-wide state of one export.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "session/record/block_node.h"

class KtGraphicItem;

namespace dxf2d {

class DxfWriter;

// The host's callbacks carry no context, so the state of an export is kept here, from the callback
// that opens the file to the one that closes it. One export at a time, on the host's thread.
struct ExportSession {
  using ReuseMap =
      std::unordered_map<std::u16string_view, std::pair<KtGraphicItem*, const BlockNode*>>;

  // The node that callbacks fill; null outside an export and once the root itself was closed.
  BlockNode* currentNode = nullptr;
  // The node opened last; the root right after the file was opened.
  BlockNode* lastNode = nullptr;
  BlockNode* root = nullptr;
  // Null outside an export. Stays set after a failed open, with its file closed.
  DxfWriter* writer = nullptr;
  // The number of the next block.
  std::uint32_t blockCounter = 0;
  // The number of nodes that are open; never read, but useful in a debugger.
  std::int32_t depth = 0;
  // The nodes to be placed as INSERTs, in the order in which the block pass meets them.
  std::vector<BlockNode*> insertList;
  // Graphic name to the drawable and the record that may be drawn again under that name.
  ReuseMap reuseMap;
  // The number of nodes, since load, that could have been reused but had no readable graphic name.
  std::uint32_t unnamedReusableCount = 0;
  BlockTree tree;

  // Whether there is a writer, and a node to write for.
  bool CanDraw() const { return writer != nullptr && currentNode != nullptr; }

  // Attaches a copy of `record` to the current node and makes it the current one. Uses up a block
  // number, also for a record that borrows another's name. There must be a current node.
  BlockNode* Enter(const BlockNode& record);
  // Frees every record and drops the pointers to them.
  void ClearTree();
};

// The one session of the module. Built at load, so that it outlives every export.
ExportSession& exportSession();

}  // namespace dxf2d
