// The module-wide state of one export.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "session/block_node.h"
#include "session/block_tree.h"

class DxfWriter;
class KtGraphicItem;

// The host's callbacks carry no context, so what one export knows stands here, from the callback
// that opens the file to the one that closes it. One export at a time, on the host's thread.
struct ExportSession {
  using ReuseMap =
      std::unordered_map<std::u16string_view, std::pair<KtGraphicItem*, const BlockNode*>>;

  // The node that callbacks fill; null outside an export and once the root itself was closed.
  BlockNode* currentNode = nullptr;
  // The node opened last; the root right after the file was opened.
  BlockNode* lastNode = nullptr;
  BlockNode* root = nullptr;
  // The open writer; null outside an export. Stays after a failed open, with its file closed.
  DxfWriter* writer = nullptr;
  // The number of the next block.
  std::uint32_t blockCounter = 0;
  // Nodes open now; kept for whoever debugs a walk, never consulted.
  std::int32_t depth = 0;
  // The nodes to be placed as INSERTs, in the order in which the block pass meets them.
  std::vector<BlockNode*> insertList;
  // Graphic name to the drawable and the record that may be drawn again under that name.
  ReuseMap reuseMap;
  // Nodes that could have been reused but whose graphic name could not be read, since load.
  std::uint32_t unnamedReusableCount = 0;
  BlockTree tree;

  // Attaches a copy of `record` to the current node and makes it the current one. Its block number
  // is consumed, also where the record borrows another's name.
  BlockNode* Enter(const BlockNode& record);
  // Ends every record and forgets what points to one.
  void ClearTree();
};

// The one session of the module. Built at load, so that it outlives every export.
ExportSession& exportSession();
