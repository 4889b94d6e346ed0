// What is written when the walk is over: the blocks that hold other blocks, and the placements.
#pragma once

#include <vector>

namespace dxf2d {

struct BlockNode;
struct ExportSession;
class DxfWriter;

// Writes, children before parents, a block of INSERTs for every node below `node` (itself included)
// that has a child with geometry, and collects the nodes to place in the session's insert list. No
// effect for a null node or without a writer. Any depth is safe.
void writeBlocks(ExportSession& session, BlockNode* node);

// Takes out every node with a direct child that has an object id: of an object made of objects, the
// parts are placed and not the whole.
void pruneInsertList(std::vector<BlockNode*>& insertList);

// Places a node's block in the drawing, by its world matrix.
void writePlacement(DxfWriter& writer, const BlockNode& node);

}  // namespace dxf2d
