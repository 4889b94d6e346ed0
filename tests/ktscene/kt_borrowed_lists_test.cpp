#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

#include "ktscene/kt_run_code.h"
#include "ktscene/kt_scene_check.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_scene_writer.h"
#include "ktscene/kt_traverser.h"

namespace {

constexpr std::array kFloats = {0.1F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 1.0F, 1.0F, 0.25F};
constexpr std::array kDoubles = {0.1, 0.0, 0.0, 1.0, 0.0, 0.0};
constexpr std::array<unsigned, 3> kTriangle = {0, 1, 2};
constexpr std::array kRuns = {0, 1, KtRunCode::kLineStrip};

// What the slots got; callbacks carry no context.
std::vector<std::vector<double>> coords;
std::vector<std::vector<int>> indices;
std::vector<const double*> places;
bool isReversed = false;

bool faceSet(const std::vector<double>& points, const std::vector<int>& runs, bool reverse,
             bool /*closed*/) {
  coords.push_back(points);
  indices.push_back(runs);
  places.push_back(points.data());
  isReversed = reverse;
  return true;
}

bool lineSet(const std::vector<double>& points, const std::vector<int>& runs) {
  return faceSet(points, runs, false, false);
}

std::shared_ptr<KtBorrowedFaces> triangle() {
  auto faces = std::make_shared<KtBorrowedFaces>();
  faces->lists.floats = kFloats.data();
  faces->lists.coordCount = kFloats.size();
  faces->lists.indices = reinterpret_cast<const int*>(kTriangle.data());
  faces->lists.indexCount = kTriangle.size();
  faces->lists.runCode = KtRunCode::kTriangles;
  faces->reverseOrientation = true;
  return faces;
}

KtScene borrowedScene() {
  auto lines = std::make_shared<KtBorrowedLines>();
  lines->lists.doubles = kDoubles.data();
  lines->lists.coordCount = kDoubles.size();
  lines->lists.indices = kRuns.data();
  lines->lists.indexCount = kRuns.size();
  KtScene scene;
  scene.nodes.emplace_back().geometry.emplace_back(triangle());
  scene.nodes.emplace_back().geometry.emplace_back(std::move(lines));
  return scene;
}

class BorrowedLists : public testing::Test {
 protected:
  ~BorrowedLists() override {
    coords.clear();
    indices.clear();
    places.clear();
  }
  static void Walk(const KtScene& scene) {
    KtTraverser traverser;
    traverser.Init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                   faceSet, lineSet, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr);
    traverser.Walk(scene, u"");
  }
};

}  // namespace

TEST_F(BorrowedLists, ReachTheSlotsAsDoublesWithACode) {
  Walk(borrowedScene());
  ASSERT_EQ(coords.size(), 2U);
  EXPECT_EQ(coords[0], (std::vector<double>{0.1F, 0, 0, 1, 0, 0, 1, 1, 0.25}));
  EXPECT_EQ(indices[0], (std::vector<int>{0, 1, 2, -5}));
  EXPECT_EQ(coords[1], (std::vector<double>{0.1, 0, 0, 1, 0, 0}));
  EXPECT_EQ(indices[1], (std::vector<int>{0, 1, -6}));
}

TEST_F(BorrowedLists, KeepTheirOrientation) {
  KtScene scene;
  scene.nodes.emplace_back().geometry.emplace_back(triangle());
  Walk(scene);
  EXPECT_TRUE(isReversed);
}

TEST_F(BorrowedLists, AreCopiedIntoOneAndTheSameMemory) {
  KtScene scene;
  for (int i = 0; i < 100; ++i) {
    scene.nodes.emplace_back().geometry.emplace_back(triangle());
  }
  Walk(scene);
  for (const double* place : places) {
    EXPECT_EQ(place, places[0]);
  }
}

TEST_F(BorrowedLists, AreWrittenAndCheckedLikeOthers) {
  KtScene scene = borrowedScene();
  const KtScene read = ParseScene(SceneText(scene, "x"), "x");
  Walk(read);
  EXPECT_EQ(indices[0], (std::vector<int>{0, 1, 2, -5}));
  EXPECT_EQ(coords[0][0], static_cast<double>(0.1F));
  auto faulty = triangle();
  faulty->lists.runCode = 0;
  scene.nodes[0].objectId = scene.nodes[0].graphicName = u"o";
  scene.nodes[0].geometry[0] = std::shared_ptr<const KtBorrowedFaces>(faulty);
  EXPECT_EQ(KtCheckScene(scene)[0].problem, "has a last run without a code, which is not drawn");
}

TEST(UserData, IsFoundThroughTheAttributes) {
  KtSceneNode node;
  EXPECT_EQ(KtGraphicAttribute(node).GetUserData(), nullptr);
  auto data = std::make_shared<int>(7);
  node.userData = data;
  const KtSceneNode moved = std::move(node);
  EXPECT_EQ(KtGraphicAttribute(moved).GetUserData(), data.get());
  EXPECT_EQ(data.use_count(), 2);
}
