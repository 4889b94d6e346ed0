#include "session/export_session.h"

#include <cassert>

namespace dxf2d {

ExportSession& exportSession() {
  static ExportSession session;
  return session;
}

BlockNode* ExportSession::Enter(const BlockNode& record) {
  assert(currentNode != nullptr);
  BlockNode* node = tree.Keep(record);
  lastNode = node;
  currentNode->children.push_back(node);
  currentNode = node;
  ++blockCounter;
  // Wraps instead of overflowing: nothing limits the number of nodes that a host opens.
  depth = static_cast<std::int32_t>(static_cast<std::uint32_t>(depth) + 1U);
  return node;
}

void ExportSession::ClearTree() {
  currentNode = nullptr;
  lastNode = nullptr;
  root = nullptr;
  insertList.clear();
  reuseMap.clear();
  tree.Clear();
}

}  // namespace dxf2d
