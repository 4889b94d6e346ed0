#include "session/block_emission.h"

#include <algorithm>

#include "dxf/dxf_writer.h"
#include "session/export_session.h"

namespace dxf2d {

namespace {

// A leaf's block, if any, was written during the walk. Whether there is one is deliberately not
// tested: a reused leaf has none of its own and is placed under the name that it borrows.
void collectLeaf(ExportSession& session, BlockNode* leaf) {
  if (!leaf->objectId.empty() && !leaf->graphicName.empty()) {
    session.insertList.push_back(leaf);
  }
}

// An inner node's block inserts the children that have geometry, at the origin: a child's block is
// already in the coordinate system that they share. Writing the block does not mark the node, so
// its parent does not insert it in turn; it is drawn through the insert list if it is an object. A
// node with geometry of its own gets a second block of the same name here. Readers of these
// drawings rely on both.
void writeInnerBlock(ExportSession& session, BlockNode* node) {
  if (std::none_of(node->children.begin(), node->children.end(),
                   [](const BlockNode* child) { return child->hasGeometry; })) {
    return;
  }
  DxfWriter& writer = *session.writer;
  writer.WriteBlockHeader(*node);
  if (!node->objectId.empty()) {
    session.insertList.push_back(node);
  }
  for (const BlockNode* child : node->children) {
    if (child->hasGeometry) {
      writer.WriteInsert(child);
    }
  }
  writer.WriteBlockEnd();
}

BlockNode* deepestFirstChild(BlockNode* node) {
  while (!node->children.empty()) {
    node = node->children.front();
  }
  return node;
}

bool hasObjectChild(const BlockNode* node) {
  return std::any_of(node->children.begin(), node->children.end(),
                     [](const BlockNode* child) { return !child->objectId.empty(); });
}

}  // namespace

void writeBlocks(ExportSession& session, BlockNode* node) {
  if (node == nullptr || session.writer == nullptr) {
    return;
  }
  const BlockNode* const top = node;
  for (node = deepestFirstChild(node);;) {
    if (node->children.empty()) {
      collectLeaf(session, node);
    } else {
      writeInnerBlock(session, node);
    }
    if (node == top) {
      return;
    }
    node = node->nextSibling != nullptr ? deepestFirstChild(node->nextSibling) : node->parent;
  }
}

void pruneInsertList(std::vector<BlockNode*>& insertList) {
  std::erase_if(insertList, hasObjectChild);
}

void writePlacement(DxfWriter& writer, const BlockNode& node) {
  writer.Write("  0\nINSERT\n");
  writer.WriteLayer();
  writer.Write(" 66\n    1\n");
  writer.WriteBlockName(node.Name());
  writer.WriteInsertPlacement(node.matrix);
  writer.Write("  0\nSEQEND\n");
}

}  // namespace dxf2d
