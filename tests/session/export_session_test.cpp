#include "session/export_session.h"

#include <gtest/gtest.h>

#include <limits>

namespace dxf2d {

namespace {

BlockNode* enterRoot(ExportSession& session) {
  session.root = session.tree.Keep(BlockNode());
  session.currentNode = session.root;
  return session.root;
}

}  // namespace

TEST(ExportSession, EnteredRecordIsCurrentLastAndCounted) {
  ExportSession session;
  BlockNode* root = enterRoot(session);
  BlockNode record;
  record.parent = root;
  record.blockNumber = 42;
  BlockNode* node = session.Enter(record);
  EXPECT_EQ(session.currentNode, node);
  EXPECT_EQ(session.lastNode, node);
  EXPECT_EQ(session.blockCounter, 1U);
  EXPECT_EQ(session.depth, 1);
  EXPECT_EQ(root->children.front(), node);
  EXPECT_EQ(node->blockNumber, 42U);
}

TEST(ExportSession, DepthWraps) {
  ExportSession session;
  enterRoot(session);
  session.depth = std::numeric_limits<std::int32_t>::max();
  session.Enter(BlockNode());
  EXPECT_EQ(session.depth, std::numeric_limits<std::int32_t>::min());
}

TEST(ExportSession, ClearingTheTreeClearsThePointersIntoIt) {
  ExportSession session;
  BlockNode* root = enterRoot(session);
  session.insertList.push_back(root);
  session.reuseMap[session.tree.Keep(std::u16string_view(u"name"))] = {nullptr, root};
  session.ClearTree();
  EXPECT_EQ(session.currentNode, nullptr);
  EXPECT_EQ(session.lastNode, nullptr);
  EXPECT_EQ(session.root, nullptr);
  EXPECT_TRUE(session.insertList.empty());
  EXPECT_TRUE(session.reuseMap.empty());
}

TEST(ExportSession, ModuleHasOne) { EXPECT_EQ(&exportSession(), &exportSession()); }

}  // namespace dxf2d
