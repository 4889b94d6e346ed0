#include "ktscene/kt_scene_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <system_error>

#include "ktscene/kt_scene_reader.h"
#include "tests/support/scratch_directory.h"

namespace {

KtSceneNode richNode() {
  KtSceneNode node;
  node.graphicName = u"g\u00FC\"\\\n\U0001F600";
  node.objectId = u"o";
  node.realObjectId = u"r";
  node.hasGraphicItem = false;
  node.matrix.Rotate(0.3, 0.4, 0.5, 1.1);
  node.matrix.SetTranslation(-0.0, 1e-300, 123456.789);
  node.color = {0.1, 1.0, 0.0};
  node.geometry.emplace_back(std::make_shared<KtFaceSet>(
      KtFaceSet{{0.1, -0.0, 1e15, 5e-324}, {0, -7, 2147483647, -2147483647 - 1}, true, false}));
  node.geometry.emplace_back(std::make_shared<KtLineSet>());
  node.geometry.emplace_back(KtBox{1, 2.5, 1e-9});
  node.geometry.emplace_back(KtCylinder{0.1, 0.2});
  node.label = std::make_unique<KtLabel>(KtLabel{u"T:1 2", -5});
  node.bounds = std::make_unique<KtBounds>(KtBounds{{-1, -2, -3}, {1, 2, 3}});
  return node;
}

void expectSame(const KtSceneNode& a, const KtSceneNode& b) {
  EXPECT_EQ(a.graphicName, b.graphicName);
  EXPECT_EQ(a.objectId, b.objectId);
  EXPECT_EQ(a.realObjectId, b.realObjectId);
  EXPECT_EQ(a.hasGraphicItem, b.hasGraphicItem);
  EXPECT_EQ(a.color, b.color);
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(a.matrix.Data()[i]),
              std::bit_cast<std::uint64_t>(b.matrix.Data()[i]));
  }
  ASSERT_EQ(a.geometry.size(), b.geometry.size());
  EXPECT_EQ(a.label == nullptr, b.label == nullptr);
  EXPECT_EQ(a.bounds == nullptr, b.bounds == nullptr);
}

const KtFaceSet& faces(const KtSceneNode& node) {
  return *std::get<std::shared_ptr<const KtFaceSet>>(node.geometry[0]);
}

std::string messageOf(KtSceneNode node) {
  KtScene scene;
  scene.nodes.push_back(std::move(node));
  try {
    SceneText(scene, "x");
  } catch (const KtSceneError& error) {
    return error.what();
  }
  return "";
}

}  // namespace

TEST(SceneText, ReadsBackAsTheSameScene) {
  KtScene scene;
  scene.nodes.push_back(richNode());
  scene.nodes[0].children.push_back(richNode());
  scene.nodes[0].children.emplace_back();
  scene.nodes.emplace_back().lod = std::make_unique<KtSceneNode::Lod>();
  scene.nodes[1].lod->ranges = {1.5, 1e10};
  scene.nodes[1].lod->levels.push_back(richNode());
  const std::string text = SceneText(scene, "rich");
  const KtScene read = ParseScene(text, "rich");
  ASSERT_EQ(read.nodes.size(), 2U);
  ASSERT_EQ(read.nodes[0].children.size(), 2U);
  expectSame(scene.nodes[0], read.nodes[0]);
  expectSame(scene.nodes[0].children[0], read.nodes[0].children[0]);
  expectSame(scene.nodes[1].lod->levels[0], read.nodes[1].lod->levels[0]);
  EXPECT_EQ(read.nodes[1].lod->ranges, scene.nodes[1].lod->ranges);
  EXPECT_EQ(faces(read.nodes[0]).coords, faces(scene.nodes[0]).coords);
  EXPECT_TRUE(std::signbit(faces(read.nodes[0]).coords[1]));
  EXPECT_EQ(faces(read.nodes[0]).indices, faces(scene.nodes[0]).indices);
  EXPECT_TRUE(faces(read.nodes[0]).reverseOrientation);
  EXPECT_FALSE(faces(read.nodes[0]).closedSurface);
  EXPECT_EQ(std::get<KtBox>(read.nodes[0].geometry[2]).c, 1e-9);
  EXPECT_EQ(std::get<KtCylinder>(read.nodes[0].geometry[3]).height, 0.2);
  EXPECT_EQ(read.nodes[0].label->text, u"T:1 2");
  EXPECT_EQ(read.nodes[0].label->colorIndex, -5);
  EXPECT_EQ(read.nodes[0].bounds->max[2], 3.0);
  // And so does what is written of that.
  EXPECT_EQ(SceneText(read, "rich"), text);
}

TEST(SceneText, KeepsEveryBitOfRandomNumbers) {
  std::mt19937_64 random(1);
  KtFaceSet set{{}, {0, -7}};
  while (set.coords.size() < 3000) {
    const double value = std::bit_cast<double>(random());
    if (std::abs(value) <= 1e15) {
      set.coords.push_back(value);
    }
  }
  KtScene scene;
  scene.nodes.emplace_back().geometry.emplace_back(std::make_shared<KtFaceSet>(set));
  const KtScene read = ParseScene(SceneText(scene, "x"), "x");
  EXPECT_EQ(faces(read.nodes[0]).coords, set.coords);
}

TEST(SceneText, WritesTheDiffuseColorOfAMaterial) {
  KtScene scene;
  scene.nodes.emplace_back().material = std::make_unique<KtMaterial>();
  EXPECT_EQ(ParseScene(SceneText(scene, "x"), "x").nodes[0].color,
            (std::array<double, 3>{1.0, 1.0, 1.0}));
}

TEST(SceneText, RefusesWhatNoFileHolds) {
  KtSceneNode infinite;
  infinite.geometry.emplace_back(
      std::make_shared<KtFaceSet>(KtFaceSet{{0, std::numeric_limits<double>::infinity(), 0}, {}}));
  EXPECT_NE(messageOf(std::move(infinite)).find("x: /nodes/0/geometry/0/faceSet/coords/1: "),
            std::string::npos);
  KtSceneNode surrogate;
  surrogate.objectId = std::u16string(1, char16_t{0xD800});
  EXPECT_NE(messageOf(std::move(surrogate)).find("surrogate"), std::string::npos);
  KtSceneNode null;
  null.geometry.emplace_back(std::shared_ptr<const KtLineSet>());
  EXPECT_NE(messageOf(std::move(null)), "");
}

TEST(SceneText, OfANodeDeeperThanAnyStackIsWritten) {
  KtSceneNode node;
  for (int i = 0; i < 100'000; ++i) {
    KtSceneNode outer;
    outer.children.push_back(std::move(node));
    node = std::move(outer);
  }
  KtScene scene;
  scene.nodes.push_back(std::move(node));
  EXPECT_GT(SceneText(scene, "deep").size(), 100'000U);
}

TEST(WriteSceneFile, WritesAFileThatReadsBack) {
  const ScratchDirectory directory;
  const std::string path = directory / "scene.json";
  KtScene scene;
  scene.nodes.push_back(richNode());
  WriteSceneFile(scene, path);
  EXPECT_EQ(SceneText(ReadSceneFile(path), "x"), SceneText(scene, "x"));
  EXPECT_EQ(directory.FileCount(), 1U);
  EXPECT_THROW(WriteSceneFile(scene, directory / "none/scene.json"), std::system_error);
}
