#include "session/record/block_node.h"

#include <gtest/gtest.h>

#include <string>

namespace dxf2d {

TEST(BlockTree, RecordsStayWhereTheyAre) {
  BlockTree tree;
  BlockNode record;
  record.blockNumber = 1;
  const BlockNode* first = tree.Keep(record);
  for (record.blockNumber = 2; record.blockNumber < 10000; ++record.blockNumber) {
    tree.Keep(record);
  }
  EXPECT_EQ(first->blockNumber, 1U);
}

TEST(BlockTree, TextsAreCopies) {
  BlockTree tree;
  std::u16string text = u"name";
  const std::u16string_view kept = tree.Keep(std::u16string_view(text));
  text = u"else";
  EXPECT_EQ(kept, u"name");
}

TEST(BlockTree, EmptyTextTakesNoRoom) {
  BlockTree tree;
  EXPECT_TRUE(tree.Keep(std::u16string_view()).empty());
}

TEST(BlockTree, CanBeFilledAgainAfterClear) {
  BlockTree tree;
  tree.Keep(BlockNode());
  tree.Clear();
  EXPECT_EQ(tree.Keep(std::u16string_view(u"again")), u"again");
  tree.Clear();
  tree.Clear();
}

}  // namespace dxf2d
