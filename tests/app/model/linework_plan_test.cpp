// Plans of objects that are looked at together: hidden lines, cuts and outlines.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "app/model/model_error.h"
#include "app/model/plan_scene.h"
#include "ktscene/kt_run_code.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

PlanScene planOf(const aiScene& model, const LineworkOptions& linework, PlanOptions options = {}) {
  options.linework = linework;
  return makePlanScene(model, {"model.stl", "Stereolithography (STL) Importer", {}}, options);
}

const std::vector<Corners> kCubeFaces{{3, 2, 1, 0}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                      {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

std::vector<aiVector3D> boxCorners(float x, float y, float z) {
  return {{0, 0, 0}, {x, 0, 0}, {x, y, 0}, {0, y, 0}, {0, 0, z}, {x, 0, z}, {x, y, z}, {0, y, z}};
}

aiMesh* makeBox(float x, float y, float z) { return makeMesh(boxCorners(x, y, z), kCubeFaces); }

using Line = std::vector<std::array<double, 2>>;

std::vector<Line> linesOf(const KtSceneNode& leaf) {
  const auto& set = *std::get<std::shared_ptr<const KtLineSet>>(leaf.geometry.at(0));
  std::vector<Line> lines(1);
  for (const int index : set.indices) {
    if (index < 0) {
      EXPECT_EQ(index, KtRunCode::kLineStrip);
      lines.emplace_back();
      continue;
    }
    const auto at = 3 * static_cast<std::size_t>(index);
    EXPECT_EQ(set.coords[at + 2], 0.0);
    lines.back().push_back({set.coords[at], set.coords[at + 1]});
  }
  lines.pop_back();
  return lines;
}

double lengthOf(const KtSceneNode& leaf) {
  double length = 0.0;
  for (const Line& line : linesOf(leaf)) {
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      length += std::hypot(line[i + 1][0] - line[i][0], line[i + 1][1] - line[i][1]);
    }
  }
  return length;
}

std::map<std::u16string, double> lengthsByObject(const PlanScene& plan) {
  std::map<std::u16string, double> lengths;
  for (const KtSceneNode& node : plan.scene.nodes) {
    for (const KtSceneNode& leaf : node.children) {
      lengths[node.objectId] += lengthOf(leaf);
    }
  }
  return lengths;
}

LineworkOptions hiding(HiddenLines hidden) {
  LineworkOptions options;
  options.hidden = hidden;
  return options;
}

LineworkOptions cutting(double height, bool isAbsolute = false) {
  LineworkOptions options;
  options.cut = CutPlane{height, isAbsolute, ""};
  return options;
}

LineworkOptions outlining(OutlineOf outline) {
  LineworkOptions options;
  options.outline = outline;
  return options;
}

// A slab of 4 by 4 over half of a box of 2 by 2, and a small box wholly below the slab.
std::unique_ptr<aiScene> makeSlabOverBoxes() {
  aiNode* root = withChildren(
      makeNode("root", aiMatrix4x4(), {}),
      {makeNode("slab", shiftedBy(0, 0, 5), {0}), makeNode("box", shiftedBy(3, 1, 0), {1}),
       makeNode("hidden", shiftedBy(1, 1, 0), {2})});
  return makeModel({makeBox(4, 4, 1), makeBox(2, 2, 1), makeBox(1, 1, 1)}, root);
}

TEST(LineworkPlan, WhatIsBehindFacesIsLeftOut) {
  const auto model = makeSlabOverBoxes();
  const PlanScene plan = planOf(*model, hiding(HiddenLines::kRemove));
  const auto lengths = lengthsByObject(plan);
  ASSERT_EQ(lengths.size(), 2u);
  EXPECT_NEAR(lengths.at(u"slab"), 16.0, 1e-9);
  EXPECT_NEAR(lengths.at(u"box"), 4.0, 1e-9);
  EXPECT_EQ(plan.content.objects, 2u);
  EXPECT_EQ(plan.content.unseenObjects, 1u);
  EXPECT_EQ(plan.content.extent.maxX, 5.0);
}

TEST(LineworkPlan, ALoopIsOneClosedLine) {
  const auto model = makeModel({makeBox(2, 1, 1)}, makeNode("a", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model, hiding(HiddenLines::kRemove));
  ASSERT_EQ(plan.scene.nodes.at(0).children.size(), 1u);
  const std::vector<Line> lines = linesOf(plan.scene.nodes[0].children[0]);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].size(), 5u);
  EXPECT_EQ(lines[0].front(), lines[0].back());
}

TEST(LineworkPlan, HiddenLinesAreLeavesOfDashes) {
  const auto model = makeSlabOverBoxes();
  LineworkOptions options = hiding(HiddenLines::kDash);
  options.dashLength = 0.25;
  const PlanScene plan = planOf(*model, options);
  ASSERT_EQ(plan.scene.nodes.size(), 3u);
  const KtSceneNode& box = plan.scene.nodes[1];
  ASSERT_EQ(box.children.size(), 2u);
  EXPECT_NEAR(lengthOf(box.children[0]), 4.0, 1e-9);
  // A U of 1 + 2 + 1, of which gaps take a third.
  const std::vector<Line> dashes = linesOf(box.children[1]);
  EXPECT_EQ(dashes.size(), 11u);
  EXPECT_NEAR(lengthOf(box.children[1]), 11 * 0.25, 1e-9);
}

TEST(LineworkPlan, NoHiddenLineIsRightBehindAVisibleOne) {
  const auto model = makeModel({makeBox(2, 1, 1)}, makeNode("a", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model, hiding(HiddenLines::kDash));
  EXPECT_EQ(plan.scene.nodes.at(0).children.size(), 1u);
}

TEST(LineworkPlan, PanesLevelWithTheirWallHaveAnOutline) {
  aiMesh* pane = makeMesh({{1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}}, {{0, 1, 2, 3}}, 1);
  const auto model = makeModel({makeSquareMesh(0), pane}, makeNode("a", aiMatrix4x4(), {0, 1}));
  for (const HiddenLines hidden : {HiddenLines::kRemove, HiddenLines::kDash}) {
    EXPECT_NEAR(lengthsByObject(planOf(*model, hiding(hidden))).at(u"a"), 6.0, 1e-9);
  }
  model->mNumMaterials = 2;
  model->mMaterials = new aiMaterial* [2] { new aiMaterial, new aiMaterial };
  const aiString name("glass");
  model->mMaterials[1]->AddProperty(&name, AI_MATKEY_NAME);
  for (const HiddenLines hidden : {HiddenLines::kRemove, HiddenLines::kDash}) {
    EXPECT_NEAR(lengthsByObject(planOf(*model, hiding(hidden))).at(u"a"), 7.0, 1e-9);
  }
}

TEST(LineworkPlan, HiddenObjectsHaveNoLabels) {
  const auto model = makeSlabOverBoxes();
  PlanOptions options;
  options.labels = PlanLabels::kName;
  EXPECT_EQ(planOf(*model, hiding(HiddenLines::kShow), options).content.labels, 3u);
  EXPECT_EQ(planOf(*model, hiding(HiddenLines::kRemove), options).content.labels, 2u);
  EXPECT_EQ(planOf(*model, hiding(HiddenLines::kDash), options).content.labels, 2u);
}

TEST(LineworkPlan, InstancesHaveBlocksOfTheirOwn) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", turnedBy(0.5F), {0}), makeNode("b", shiftedBy(1, 0, -3), {0})});
  const auto model = makeModel({makeBox(2, 2, 1)}, root);
  const PlanScene plan = planOf(*model, hiding(HiddenLines::kRemove));
  ASSERT_EQ(plan.scene.nodes.size(), 2u);
  EXPECT_NE(plan.scene.nodes[0].graphicName, plan.scene.nodes[1].graphicName);
  EXPECT_EQ(plan.content.instances, 0u);
  EXPECT_EQ(plan.content.unshared, 1u);
}

TEST(LineworkPlan, EachMeshKeepsItsColor) {
  auto model =
      makeModel({makeSquareMesh(0), makeMesh({{2, 0, 0}, {3, 0, 0}, {3, 1, 0}}, {{0, 1, 2}}, 1)},
                makeNode("a", aiMatrix4x4(), {0, 1}));
  model->mNumMaterials = 2;
  model->mMaterials = new aiMaterial* [2] { new aiMaterial, new aiMaterial };
  const aiColor4D red(1, 0, 0, 1);
  model->mMaterials[1]->AddProperty(&red, 1, AI_MATKEY_COLOR_DIFFUSE);
  const PlanScene plan = planOf(*model, hiding(HiddenLines::kRemove));
  const std::vector<KtSceneNode>& leaves = plan.scene.nodes.at(0).children;
  ASSERT_EQ(leaves.size(), 2u);
  EXPECT_EQ(leaves[0].color, kDefaultPen);
  EXPECT_EQ(leaves[1].color, (Color{1, 0, 0}));
}

TEST(LineworkPlan, ACutIsALoopAndWhatIsAboveIsGone) {
  // A ramp: its cut half way up is in the middle.
  const auto model =
      makeModel({makeMesh({{0, 0, 2}, {4, 0, 2}, {4, 1, 2}, {0, 1, 2}, {4, 0, 6}, {4, 1, 6}},
                          {{3, 2, 1, 0}, {0, 4, 5, 3}, {1, 2, 5, 4}, {0, 1, 4}, {2, 3, 5}})},
                makeNode("ramp", aiMatrix4x4(), {0}));
  for (const LineworkOptions& options : {cutting(2), cutting(4, true)}) {
    const PlanScene plan = planOf(*model, options);
    ASSERT_EQ(plan.scene.nodes.at(0).children.size(), 2u);
    const std::vector<Line> cut = linesOf(plan.scene.nodes[0].children[1]);
    ASSERT_EQ(cut.size(), 1u);
    EXPECT_EQ(cut[0].front(), cut[0].back());
    EXPECT_NEAR(lengthOf(plan.scene.nodes[0].children[1]), 6.0, 1e-9);
    EXPECT_EQ(plan.content.openEnds, 0u);
  }
}

TEST(LineworkPlan, FacesOfSeveralMeshesAreOneCutBody) {
  std::vector<aiMesh*> meshes;
  std::vector<unsigned> numbers;
  for (const Corners& face : kCubeFaces) {
    numbers.push_back(static_cast<unsigned>(meshes.size()));
    meshes.push_back(makeMesh(boxCorners(2, 1, 1), {face}));
  }
  // Seen from above, the cut cube hides the square inside of it.
  meshes.push_back(makeMesh({{0.5, 0.25, 0.25}, {1, 0.25, 0.25}, {1, 0.5, 0.25}}, {{0, 1, 2}}));
  aiNode* root = withChildren(makeNode("cube", aiMatrix4x4(), numbers),
                              {makeNode("inside", aiMatrix4x4(), {6})});
  const auto model = makeModel(meshes, root);
  LineworkOptions options = cutting(0.5);
  options.hidden = HiddenLines::kRemove;
  const PlanScene plan = planOf(*model, options);
  EXPECT_EQ(plan.content.openObjects, 0u);
  EXPECT_EQ(plan.content.openEnds, 0u);
  const auto lengths = lengthsByObject(plan);
  ASSERT_EQ(lengths.size(), 1u);
  EXPECT_NEAR(lengths.at(u"cube"), 6.0, 1e-9);
}

TEST(LineworkPlan, OpenEndsOfACutAreCounted) {
  std::vector<Corners> faces = kCubeFaces;
  faces.pop_back();
  const auto model =
      makeModel({makeMesh(boxCorners(1, 1, 1), faces)}, makeNode("a", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model, cutting(0.5));
  EXPECT_EQ(plan.content.openEnds, 2u);
  // Nothing hides anything.
  EXPECT_EQ(plan.content.openObjects, 0u);
  LineworkOptions options = cutting(0.5);
  options.hidden = HiddenLines::kRemove;
  EXPECT_EQ(planOf(*model, options).content.openObjects, 1u);
}

TEST(LineworkPlan, NothingBelowTheCutIsNothingToDraw) {
  const auto model = makeModel({makeBox(1, 1, 1)}, makeNode("a", aiMatrix4x4(), {0}));
  try {
    planOf(*model, cutting(-3, true));
    FAIL();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.Code(), kExitNothingToDraw);
  }
}

TEST(LineworkPlan, TheOutlineOfTheViewIsTheUnion) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("b", shiftedBy(1, 1, 3), {0})});
  const auto model = makeModel({makeBox(2, 2, 1)}, root);
  const PlanScene plan = planOf(*model, outlining(OutlineOf::kWholeView));
  ASSERT_EQ(plan.scene.nodes.size(), 1u);
  EXPECT_EQ(plan.scene.nodes[0].objectId, u"outline");
  const std::vector<Line> lines = linesOf(plan.scene.nodes[0].children.at(0));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].size(), 9u);
  EXPECT_EQ(lines[0].front(), lines[0].back());
  EXPECT_EQ(plan.content.droppedPieces, 0u);
}

TEST(LineworkPlan, EachObjectHasAnOutline) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("none", aiMatrix4x4(), {2}), makeNode("a", aiMatrix4x4(), {0, 1}),
                    makeNode("b", shiftedBy(1, 1, 3), {0})});
  // The second mesh lies within the first.
  const auto model =
      makeModel({makeBox(2, 2, 1), makeBox(1, 1, 3), makeMesh({{0, 0, 0}}, {{0}})}, root);
  const PlanScene plan = planOf(*model, outlining(OutlineOf::kEachObject));
  const auto lengths = lengthsByObject(plan);
  ASSERT_EQ(lengths.size(), 2u);
  EXPECT_NEAR(lengths.at(u"a"), 8.0, 1e-9);
  EXPECT_NEAR(lengths.at(u"b"), 8.0, 1e-9);
  EXPECT_EQ(plan.content.emptyObjects, 1u);
  EXPECT_EQ(plan.content.unseenObjects, 0u);
}

TEST(LineworkPlan, DashesCountTowardsTheLimitOfVertices) {
  const auto model = makeSlabOverBoxes();
  LineworkOptions linework = hiding(HiddenLines::kDash);
  linework.dashLength = 1e-300;
  PlanOptions options;
  options.limits.vertices = 1000;
  try {
    planOf(*model, linework, options);
    FAIL();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.Code(), kExitLimit);
  }
}

TEST(LineworkPlan, WithoutLineworkObjectsAreDrawnByThemselves) {
  const auto model = makeSlabOverBoxes();
  const PlanScene plan = planOf(*model, {});
  EXPECT_EQ(plan.content.objects, 3u);
  EXPECT_EQ(plan.content.unshared, 0u);
  EXPECT_TRUE(std::holds_alternative<std::shared_ptr<const KtLineSet>>(
      plan.scene.nodes.at(0).children.at(0).geometry.at(0)));
}

// Three boxes of one mesh on the floor, one of them turned, and one 0.5 above it.
std::unique_ptr<aiScene> makeEqualBoxes() {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("b", shiftedBy(5, 0, 0), {0}),
                    makeNode("c", shiftedBy(0, 9, 0) * turnedBy(0.5F), {0}),
                    makeNode("d", shiftedBy(9, 9, 0.5F), {0})});
  return makeModel({makeBox(2, 1, 1)}, root);
}

TEST(LineworkPlan, ObjectsThatAreCutEquallyShareABlock) {
  const auto model = makeEqualBoxes();
  const PlanScene plan = planOf(*model, cutting(0.75));
  ASSERT_EQ(plan.scene.nodes.size(), 4u);
  EXPECT_EQ(plan.content.instances, 2u);
  EXPECT_EQ(plan.content.unshared, 1u);
  std::map<std::u16string, std::u16string> blocks;
  for (const KtSceneNode& node : plan.scene.nodes) {
    blocks[node.objectId] = node.graphicName;
  }
  EXPECT_EQ(blocks.at(u"b"), u"a");
  EXPECT_EQ(blocks.at(u"c"), u"a");
  EXPECT_EQ(blocks.at(u"d"), u"d");
  EXPECT_NEAR(plan.content.extent.maxX, 11.0, 1e-9);
  EXPECT_NEAR(plan.content.extent.minX, -std::sin(0.5), 1e-6);
}

TEST(LineworkPlan, ObjectsBelowACutShareABlock) {
  const auto model = makeEqualBoxes();
  const PlanScene plan = planOf(*model, cutting(3.0));
  EXPECT_EQ(plan.content.instances, 3u);
  EXPECT_EQ(plan.content.unshared, 0u);
  EXPECT_EQ(plan.scene.nodes.at(3).graphicName, u"a");
}

TEST(LineworkPlan, HiddenLinesUnshareObjects) {
  const auto model = makeEqualBoxes();
  LineworkOptions options = cutting(3.0);
  options.hidden = HiddenLines::kRemove;
  const PlanScene plan = planOf(*model, options);
  EXPECT_EQ(plan.content.instances, 0u);
  EXPECT_EQ(plan.content.unshared, 3u);
}

}  // namespace
}  // namespace dxf2d
