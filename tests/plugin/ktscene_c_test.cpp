#include "ktscene/ktscene_c.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "ktscene/kt_scene_reader.h"
#include "tests/support/scratch_directory.h"

namespace {

namespace fs = std::filesystem;

struct SceneDeleter {
  void operator()(KtCScene* scene) const { KtCFreeScene(scene); }
};
using OwnScene = std::unique_ptr<KtCScene, SceneDeleter>;

class CApi : public testing::Test {
 protected:
  std::string At(const std::string& name) const { return directory_ / name; }
  bool IsEmpty() const { return directory_.FileCount() == 0; }

 private:
  ScratchDirectory directory_;
};

std::string textOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

const std::array<float, 12> kFloats = {0, 0, 0, 4, 0, 0, 4, 3, 0, 0, 3, 0};
const std::array<double, 12> kDoubles = {0, 0, 0, 4, 0, 0, 4, 3, 0, 0, 3, 0};
const std::array<int, 6> kTriangles = {0, 1, 2, 0, 2, 3};
const std::array<int, 4> kSquare = {0, 1, 2, 3};

KtCLists triangles() {
  KtCLists lists{};
  lists.size = sizeof lists;
  lists.floats = kFloats.data();
  lists.coord_count = kFloats.size();
  lists.indices = kTriangles.data();
  lists.index_count = kTriangles.size();
  lists.run_code = KTC_TRIANGLES;
  return lists;
}

OwnScene sceneOf(const KtCLists& lists, bool isLines = false) {
  OwnScene scene(KtCNewScene());
  KtCNode* node = KtCAddNode(scene.get(), nullptr);
  EXPECT_EQ(KtCSetNames(node, "a", nullptr), KTC_OK);
  EXPECT_EQ(isLines ? KtCAddLines(node, &lists) : KtCAddFaces(node, &lists, 0), KTC_OK)
      << KtCErrorText();
  return scene;
}

int drawInto(const KtCScene* scene, const std::string& path, const char* plugin = DXF2D_MODULE) {
  KtCDrawOptions options{};
  options.size = sizeof options;
  options.plugin = plugin;
  return KtCDraw(scene, path.c_str(), &options);
}

// The status of adding `lists` to a node, to which nothing is added.
int refusal(const KtCLists& lists) {
  OwnScene scene(KtCNewScene());
  return KtCAddFaces(KtCAddNode(scene.get(), nullptr), &lists, 0);
}

TEST_F(CApi, FloatsDoublesLentAndCopiedListsGiveOneDrawing) {
  const KtCLists floats = triangles();
  ASSERT_EQ(drawInto(sceneOf(floats).get(), At("floats.dxf")), KTC_OK) << KtCErrorText();
  KtCLists doubles = floats;
  doubles.floats = nullptr;
  doubles.doubles = kDoubles.data();
  ASSERT_EQ(drawInto(sceneOf(doubles).get(), At("doubles.dxf")), KTC_OK);
  KtCLists lent = doubles;
  lent.is_lent = 1;
  ASSERT_EQ(drawInto(sceneOf(lent).get(), At("lent.dxf")), KTC_OK);
  EXPECT_NE(textOf(At("floats.dxf")).find("POLYLINE"), std::string::npos);
  EXPECT_EQ(textOf(At("floats.dxf")), textOf(At("doubles.dxf")));
  EXPECT_EQ(textOf(At("floats.dxf")), textOf(At("lent.dxf")));
}

TEST_F(CApi, CopiedListsAreThoseOfTheCall) {
  std::vector<float> changing(kFloats.begin(), kFloats.end());
  KtCLists lists = triangles();
  lists.floats = changing.data();
  const OwnScene copied = sceneOf(lists);
  lists.is_lent = 1;
  const OwnScene lent = sceneOf(lists);
  changing[3] = changing[6] = 9.0F;
  ASSERT_EQ(KtCWriteSceneFile(copied.get(), At("copied.json").c_str()), KTC_OK);
  ASSERT_EQ(KtCWriteSceneFile(lent.get(), At("lent.json").c_str()), KTC_OK);
  EXPECT_NE(textOf(At("copied.json")).find("[0,0,0,4,0,0,4,3,0,0,3,0]"), std::string::npos);
  EXPECT_NE(textOf(At("lent.json")).find("[0,0,0,9,0,0,9,3,0,0,3,0]"), std::string::npos);
}

TEST_F(CApi, CountsTellPolygonsAndLineStrips) {
  const std::array<int, 2> counts = {3, 1};
  KtCLists lists = triangles();
  lists.indices = kSquare.data();
  lists.index_count = kSquare.size();
  lists.run_code = 0;
  lists.counts = counts.data();
  lists.count_count = counts.size();
  for (const int isLent : {0, 1}) {
    lists.is_lent = isLent;
    ASSERT_EQ(KtCWriteSceneFile(sceneOf(lists).get(), At("faces.json").c_str()), KTC_OK);
    EXPECT_NE(textOf(At("faces.json")).find("[0,1,2,-7,3,-7]"), std::string::npos);
    ASSERT_EQ(KtCWriteSceneFile(sceneOf(lists, true).get(), At("lines.json").c_str()), KTC_OK);
    EXPECT_NE(textOf(At("lines.json")).find("[0,1,2,-6,3,-6]"), std::string::npos);
  }
}

TEST_F(CApi, NodesKeepTheirOrderAndTheirContent) {
  OwnScene scene(KtCNewScene());
  KtCNode* first = KtCAddNode(scene.get(), nullptr);
  KtCNode* second = KtCAddNode(scene.get(), nullptr);
  KtCNode* child = KtCAddNode(scene.get(), first);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_NE(KtCAddNode(scene.get(), second), nullptr);
  }
  std::array<double, 16> matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
  const KtCLists lists = triangles();
  EXPECT_EQ(KtCSetNames(first, "T\xC3\xBCr", "node-1"), KTC_OK);
  EXPECT_EQ(KtCSetMatrix(first, matrix.data()), KTC_OK);
  EXPECT_EQ(KtCSetColor(child, 1.0, 0.5, 0.0), KTC_OK);
  EXPECT_EQ(KtCAddFaces(child, &lists, KTC_CLOSED | KTC_CLOCKWISE), KTC_OK);
  EXPECT_EQ(KtCShareGeometry(second, child), KTC_OK);
  ASSERT_EQ(KtCWriteSceneFile(scene.get(), At("scene.json").c_str()), KTC_OK) << KtCErrorText();

  const KtScene read = ReadSceneFile(At("scene.json"));
  ASSERT_EQ(read.nodes.size(), 2U);
  EXPECT_EQ(read.nodes[0].objectId, u"T\u00FCr");
  EXPECT_EQ(read.nodes[0].realObjectId, u"T\u00FCr");
  EXPECT_EQ(read.nodes[0].graphicName, u"node-1");
  // Its number gives it a name that the caller took.
  EXPECT_EQ(read.nodes[1].graphicName, u"node-1+");
  EXPECT_EQ(read.nodes[0].matrix.Data()[13], 6.0);
  ASSERT_EQ(read.nodes[0].children.size(), 1U);
  EXPECT_EQ((*read.nodes[0].children[0].color)[1], 0.5);
  const auto& set =
      std::get<std::shared_ptr<const KtFaceSet>>(read.nodes[0].children[0].geometry.at(0));
  EXPECT_TRUE(set->closedSurface);
  EXPECT_TRUE(set->reverseOrientation);
  EXPECT_EQ(read.nodes[1].children.size(), 1000U);
  EXPECT_EQ(read.nodes[1].geometry.size(), 1U);
}

TEST_F(CApi, DeepScenesAreDrawn) {
  OwnScene scene(KtCNewScene());
  KtCNode* node = nullptr;
  for (int i = 0; i < 100000; ++i) {
    node = KtCAddNode(scene.get(), node);
  }
  EXPECT_EQ(drawInto(scene.get(), At("deep.dxf")), KTC_OK) << KtCErrorText();
}

TEST_F(CApi, LabelsAreDrawnLineByLine) {
  OwnScene scene(KtCNewScene());
  KtCNode* node = KtCAddNode(scene.get(), nullptr);
  KtCLabel label{};
  label.size = sizeof label;
  label.text = "say \"hi\"\nsecond";
  label.height = 2.5;
  EXPECT_EQ(KtCSetNames(node, "a", nullptr), KTC_OK);
  ASSERT_EQ(KtCSetLabel(node, &label), KTC_OK) << KtCErrorText();
  ASSERT_EQ(drawInto(scene.get(), At("label.dxf")), KTC_OK) << KtCErrorText();
  const std::string drawing = textOf(At("label.dxf"));
  EXPECT_NE(drawing.find("say \"hi\""), std::string::npos);
  EXPECT_NE(drawing.find("\nsecond\n"), std::string::npos);
  label.height = 0.0;
  EXPECT_EQ(KtCSetLabel(node, &label), KTC_INVALID);
  label.height = 1.0;
  label.align = 'x';
  EXPECT_EQ(KtCSetLabel(node, &label), KTC_INVALID);
  label.align = 'R';
  label.text = nullptr;
  EXPECT_EQ(KtCSetLabel(node, &label), KTC_INVALID);
}

TEST_F(CApi, SplitMatricesMultiplyToTheWhole) {
  const std::array<double, 16> matrix = {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1};
  std::array<double, 16> placement{};
  std::array<double, 16> residual{};
  ASSERT_EQ(KtCSplitMatrix(matrix.data(), placement.data(), residual.data()), KTC_OK);
  EXPECT_EQ(placement, (std::array<double, 16>{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}));
  EXPECT_EQ(residual, (std::array<double, 16>{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
}

TEST_F(CApi, ContradictoryListsAreRefusedWithASentence) {
  const std::array<int, 1> three = {3};
  const std::array<int, 2> tooMany = {3, 4};
  KtCLists lists = triangles();
  lists.doubles = kDoubles.data();
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  EXPECT_STREQ(KtCErrorText(), "KtCAddFaces: there are floats and doubles; pass one of them");
  lists = triangles();
  lists.floats = nullptr;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists = triangles();
  lists.coord_count = 11;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists = triangles();
  lists.indices = nullptr;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists = triangles();
  lists.run_code = -8;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists = triangles();
  lists.counts = three.data();
  lists.count_count = 1;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists.run_code = 0;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists.counts = tooMany.data();
  lists.count_count = 2;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
  lists = triangles();
  lists.size = 0;
  EXPECT_EQ(refusal(lists), KTC_INVALID);
}

TEST_F(CApi, BadArgumentsAreRefusedWithASentence) {
  OwnScene scene(KtCNewScene());
  OwnScene other(KtCNewScene());
  KtCNode* node = KtCAddNode(scene.get(), nullptr);
  EXPECT_EQ(KtCAddNode(nullptr, nullptr), nullptr);
  EXPECT_STREQ(KtCErrorText(), "KtCAddNode: the scene is null; pass one that is not");
  EXPECT_EQ(KtCAddNode(other.get(), node), nullptr);
  EXPECT_EQ(KtCSetNames(nullptr, "a", nullptr), KTC_INVALID);
  EXPECT_EQ(KtCSetMatrix(node, nullptr), KTC_INVALID);
  std::array<double, 16> matrix{};
  matrix[7] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(KtCSetMatrix(node, matrix.data()), KTC_INVALID);
  EXPECT_EQ(KtCSetColor(node, 0.0, 255.0, 0.0), KTC_INVALID);
  EXPECT_EQ(KtCSetLabel(node, nullptr), KTC_INVALID);
  const KtCLists lists = triangles();
  EXPECT_EQ(KtCAddFaces(node, nullptr, 0), KTC_INVALID);
  EXPECT_EQ(KtCAddFaces(node, &lists, 4), KTC_INVALID);
  EXPECT_EQ(KtCShareGeometry(node, node), KTC_INVALID);
  EXPECT_EQ(KtCShareGeometry(node, KtCAddNode(other.get(), nullptr)), KTC_INVALID);
  EXPECT_EQ(KtCCheckScene(scene.get(), nullptr, nullptr), KTC_INVALID);
  EXPECT_EQ(KtCDraw(scene.get(), nullptr, nullptr), KTC_INVALID);
  EXPECT_EQ(KtCWriteSceneFile(nullptr, "x"), KTC_INVALID);
  KtCFreeScene(nullptr);
}

TEST_F(CApi, WhatFailsLeavesNoFile) {
  const OwnScene scene = sceneOf(triangles());
  EXPECT_EQ(drawInto(scene.get(), At("a.dxf"), "no/such.so"), KTC_PLUGIN_FAILED);
  EXPECT_NE(std::string(KtCErrorText()).find("no/such.so"), std::string::npos);
  EXPECT_EQ(drawInto(scene.get(), At("no/a.dxf")), KTC_NOT_WRITTEN);
  EXPECT_NE(std::string(KtCErrorText()).find("no/a.dxf"), std::string::npos);
  EXPECT_TRUE(IsEmpty());
  if (fs::exists("/dev/full")) {
    EXPECT_EQ(drawInto(scene.get(), "/dev/full"), KTC_NOT_WRITTEN);
    EXPECT_EQ(std::string(KtCErrorText()).find("/dev/full: cannot be written: "), 0U)
        << KtCErrorText();
  }
}

TEST_F(CApi, ProgressCountsNodesAndCancels) {
  const OwnScene scene = sceneOf(triangles());
  KtCAddNode(scene.get(), nullptr);
  std::vector<std::size_t> counts;
  KtCDrawOptions options{};
  options.size = sizeof options;
  options.plugin = DXF2D_MODULE;
  options.context = &counts;
  options.progress = [](void* context, std::size_t nodes) {
    static_cast<std::vector<std::size_t>*>(context)->push_back(nodes);
    return 1;
  };
  EXPECT_EQ(KtCDraw(scene.get(), At("a.dxf").c_str(), &options), KTC_OK);
  EXPECT_EQ(counts, (std::vector<std::size_t>{0, 1}));
  options.progress = [](void*, std::size_t) { return 0; };
  EXPECT_EQ(KtCDraw(scene.get(), At("b.dxf").c_str(), &options), KTC_CANCELED);
  EXPECT_FALSE(fs::exists(At("b.dxf")));
}

TEST_F(CApi, TheCheckFindsWhatADrawingLacks) {
  const auto keep = [](void* context, int isError, const char* node, const char* problem,
                       const char* remedy) {
    static_cast<std::vector<std::string>*>(context)->push_back(
        std::to_string(isError) + " " + node + ": " + problem + "; " + remedy);
  };
  std::vector<std::string> found;
  const OwnScene sound = sceneOf(triangles());
  ASSERT_EQ(KtCCheckScene(sound.get(), keep, &found), KTC_OK);
  EXPECT_EQ(found, std::vector<std::string>{});
  const std::array<int, 3> beyond = {0, 1, 9};
  KtCLists lists = triangles();
  lists.indices = beyond.data();
  lists.index_count = beyond.size();
  ASSERT_EQ(KtCCheckScene(sceneOf(lists).get(), keep, &found), KTC_OK);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].find("1 /nodes/0/geometry/0"), 0U) << found[0];
}

TEST_F(CApi, ThreadsDrawOneSceneAtOnceAndHaveErrorsOfTheirOwn) {
  const OwnScene scene = sceneOf(triangles());
  std::array<std::string, 4> errors;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < errors.size(); ++i) {
    threads.emplace_back([&, i] {
      EXPECT_EQ(drawInto(scene.get(), At(std::to_string(i))), KTC_OK) << KtCErrorText();
      EXPECT_EQ(drawInto(scene.get(), At("no/" + std::to_string(i))), KTC_NOT_WRITTEN);
      errors[i] = KtCErrorText();
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t i = 0; i < errors.size(); ++i) {
    EXPECT_EQ(textOf(At(std::to_string(i))), textOf(At("0")));
    EXPECT_NE(errors[i].find("no/" + std::to_string(i)), std::string::npos) << errors[i];
  }
}

}  // namespace
