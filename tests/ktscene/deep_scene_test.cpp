// Scenes that are deep or wide beyond what recursion would bear.
#include <gtest/gtest.h>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "small_stack.h"

namespace {

constexpr std::size_t kMany = 1'000'000;

std::string repeated(std::string_view part, std::size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  for (std::size_t i = 0; i < times; ++i) {
    text += part;
  }
  return text;
}

std::string nestedChildren(std::size_t depth) {
  return R"({"nodes":[)" + repeated(R"({"children":[)", depth - 1) + "{}" +
         repeated("]}", depth - 1) + "]}";
}

std::string nestedLevels(std::size_t depth) {
  return R"({"nodes":[)" + repeated(R"({"lod":{"levels":[)", depth - 1) + "{}" +
         repeated("]}}", depth - 1) + "]}";
}

struct Count {
  std::size_t opened = 0;
  std::size_t closed = 0;
  std::size_t lods = 0;
};
Count count;

Count walk(KtScene& scene) {
  count = {};
  KtCallbacks c;
  c.openNode = [](KtGraphicAttribute*) { ++count.opened; };
  c.closeNode = [] { ++count.closed; };
  c.closeLod = [] { ++count.lods; };
  KtTraverser traverser;
  traverser.Init(c.openNode, c.closeNode, nullptr, nullptr, c.closeLod, nullptr, nullptr, nullptr,
                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr, nullptr, nullptr);
  EXPECT_TRUE(traverser.Walk(scene, u""));
  return count;
}

void expectNestedChildrenWork() {
  KtScene scene = ParseScene(nestedChildren(kMany), "deep");
  const Count walked = walk(scene);
  EXPECT_EQ(walked.opened, kMany);
  EXPECT_EQ(walked.closed, kMany);
}

void expectNestedLevelsWork() {
  KtScene scene = ParseScene(nestedLevels(kMany), "deep");
  const Count walked = walk(scene);
  EXPECT_EQ(walked.opened, 1u);
  EXPECT_EQ(walked.lods, kMany - 1);
}

}  // namespace

TEST(DeepScene, AMillionNestedNodesAreReadWalkedAndDestroyed) { expectNestedChildrenWork(); }

TEST(DeepScene, AMillionNestedNodesFitASmallStack) {
  runOnSmallStack([] { expectNestedChildrenWork(); });
}

TEST(DeepScene, AMillionNestedGroupsFitASmallStack) {
  runOnSmallStack([] { expectNestedLevelsWork(); });
}

TEST(DeepScene, AMillionSiblingsAreReadAndWalked) {
  KtScene scene = ParseScene(R"({"nodes":[)" + repeated("{},", kMany - 1) + "{}]}", "wide");
  EXPECT_EQ(scene.nodes.size(), kMany);
  EXPECT_EQ(walk(scene).opened, kMany);
}

TEST(DeepScene, BushyChainIsDestroyedOnASmallStack) {
  runOnSmallStack([] {
    KtSceneNode node;
    for (int i = 0; i < 100'000; ++i) {
      KtSceneNode parent;
      parent.children.resize(3);
      parent.children[static_cast<std::size_t>(i % 3)] = std::move(node);
      node = std::move(parent);
    }
    EXPECT_EQ(node.children.size(), 3u);
  });
}

TEST(DeepScene, RefusalDeepDownIsAReadableSentence) {
  runOnSmallStack([] {
    const std::string text = R"({"nodes":[)" + repeated(R"({"children":[)", kMany / 10) + "7";
    try {
      ParseScene(text, "deep");
      FAIL() << "was not refused";
    } catch (const KtSceneError& error) {
      const std::string sentence = error.what();
      EXPECT_LT(sentence.size(), 2000u);
      EXPECT_TRUE(sentence.starts_with("deep: /nodes/0/children/0/"));
      EXPECT_TRUE(sentence.ends_with("/children/0: must be an object, is an integer"));
    }
  });
}

TEST(DeepScene, NestedListsOutsideTheFormatAreRefusedAtOnce) {
  EXPECT_THROW(ParseScene(repeated("[", kMany), "deep"), KtSceneError);
}
