#include "ktscene/kt_scene.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

KtSceneNode named(std::u16string name) {
  KtSceneNode node;
  node.graphicName = std::move(name);
  return node;
}

// A node with both children and levels, `depth` times over, so that each kind of list must be taken
// apart below the other. `mesh` is what every node shows.
KtSceneNode tangled(const std::shared_ptr<const KtFaceSet>& mesh, int depth) {
  KtSceneNode node;
  for (int i = 0; i < depth; ++i) {
    KtSceneNode parent;
    parent.geometry.emplace_back(mesh);
    for (int sibling = 0; sibling < 3; ++sibling) {
      parent.children.emplace_back().geometry.emplace_back(mesh);
    }
    parent.lod = std::make_unique<KtSceneNode::Lod>();
    for (int level = 0; level < 3; ++level) {
      parent.lod->levels.emplace_back().geometry.emplace_back(mesh);
    }
    std::vector<KtSceneNode>& list = i % 2 == 0 ? parent.children : parent.lod->levels;
    list[static_cast<std::size_t>(i % 3)] = std::move(node);
    node = std::move(parent);
  }
  return node;
}

}  // namespace

TEST(KtSceneNode, MovesWithoutThrowing) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<KtSceneNode>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<KtSceneNode>);
  EXPECT_FALSE(std::is_copy_constructible_v<KtSceneNode>);
}

TEST(KtSceneNode, MoveTakesAllThatIsBelow) {
  KtSceneNode node = named(u"a");
  node.children.push_back(named(u"b"));
  node.color = {0, 0, 1};
  KtSceneNode moved = std::move(node);
  EXPECT_EQ(moved.graphicName, u"a");
  ASSERT_EQ(moved.children.size(), 1u);
  EXPECT_EQ(moved.children[0].graphicName, u"b");
  EXPECT_TRUE(moved.color.has_value());
}

TEST(KtSceneNode, MoveFromOwnChildLeavesTheChild) {
  KtSceneNode node = named(u"a");
  node.children.push_back(named(u"b"));
  node.children[0].children.push_back(named(u"c"));
  node = std::move(node.children[0]);
  EXPECT_EQ(node.graphicName, u"b");
  ASSERT_EQ(node.children.size(), 1u);
  EXPECT_EQ(node.children[0].graphicName, u"c");
}

TEST(KtSceneNode, MoveFromOwnLevelLeavesTheLevel) {
  KtSceneNode node;
  node.lod = std::make_unique<KtSceneNode::Lod>();
  node.lod->levels.push_back(named(u"b"));
  node.lod->levels[0].children.push_back(named(u"c"));
  node = std::move(node.lod->levels[0]);
  EXPECT_EQ(node.graphicName, u"b");
  EXPECT_EQ(node.lod, nullptr);
  EXPECT_EQ(node.children.size(), 1u);
}

TEST(KtSceneNode, MoveToItselfChangesNothing) {
  KtSceneNode node = named(u"a");
  node.children.push_back(named(u"b"));
  KtSceneNode& same = node;
  node = std::move(same);
  EXPECT_EQ(node.graphicName, u"a");
  EXPECT_EQ(node.children.size(), 1u);
}

TEST(KtSceneNode, DestructionFreesEveryNodeOfATangledTree) {
  const auto mesh = std::make_shared<const KtFaceSet>();
  {
    const KtSceneNode node = tangled(mesh, 500);
    EXPECT_GT(mesh.use_count(), 3000);
  }
  EXPECT_EQ(mesh.use_count(), 1);
}

TEST(KtSceneNode, ClearingItsListFreesEveryNodeBelow) {
  const auto mesh = std::make_shared<const KtFaceSet>();
  KtSceneNode node;
  for (int i = 0; i < 5; ++i) {
    node.children.push_back(tangled(mesh, 20 + i));
  }
  node.children.clear();
  EXPECT_EQ(mesh.use_count(), 1);
}
