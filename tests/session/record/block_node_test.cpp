#include "session/record/block_node.h"

#include <gtest/gtest.h>

#include <vector>

namespace dxf2d {

TEST(BlockNode, NameEndsInALineFeed) {
  BlockNode node;
  node.blockNumber = 0;
  EXPECT_EQ(node.Name(), CString(u"GO_0\n"));
  node.blockNumber = 1234567;
  EXPECT_EQ(node.Name(), CString(u"GO_1234567\n"));
}

TEST(BlockNode, BeginsWithoutColorGeometryOrNames) {
  const BlockNode node{};
  EXPECT_EQ(node.colorIndex, -1);
  EXPECT_FALSE(node.hasGeometry);
  EXPECT_FALSE(node.reservedFlag);
  EXPECT_TRUE(node.objectId.empty());
  EXPECT_TRUE(node.graphicName.empty());
  EXPECT_TRUE(node.realObjectId.empty());
  EXPECT_TRUE(node.children.empty());
}

TEST(BlockNode, MarkingReachesEveryAncestorAndNoSibling) {
  BlockNode root;
  BlockNode branch;
  BlockNode leaf;
  BlockNode sibling;
  branch.parent = &root;
  leaf.parent = &branch;
  sibling.parent = &branch;
  leaf.MarkGeometry();
  EXPECT_TRUE(leaf.hasGeometry);
  EXPECT_TRUE(branch.hasGeometry);
  EXPECT_TRUE(root.hasGeometry);
  EXPECT_FALSE(sibling.hasGeometry);
  sibling.MarkGeometry();
  EXPECT_TRUE(sibling.hasGeometry);
}

TEST(ChildList, KeepsTheOrderOfOpening) {
  BlockNode first;
  BlockNode second;
  BlockNode third;
  ChildList children;
  children.push_back(&first);
  children.push_back(&second);
  children.push_back(&third);
  EXPECT_FALSE(children.empty());
  EXPECT_EQ(children.front(), &first);
  EXPECT_EQ(std::vector<BlockNode*>(children.begin(), children.end()),
            (std::vector<BlockNode*>{&first, &second, &third}));
}

}  // namespace dxf2d
