#include "session/export_session.h"

ExportSession& exportSession() {
  static ExportSession session;
  return session;
}

BlockNode* ExportSession::Enter(const BlockNode& record) {
  BlockNode* node = tree.Keep(record);
  lastNode = node;
  currentNode->children.push_back(node);
  currentNode = node;
  ++blockCounter;
  // Wraps rather than overflows: a host may open nodes for as long as it likes.
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
