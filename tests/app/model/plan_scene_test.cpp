#include "app/model/plan_scene.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "app/model/model_error.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

// A reader that leaves z up, so that plans show the models as they are written here.
constexpr const char* kReader = "Stereolithography (STL) Importer";

// Faces and colors as the model has them.
PlanOptions asGiven() {
  PlanOptions options;
  options.repair = false;
  options.creaseDegrees = mesh::kNoCreases;
  options.colors = PlanColors::kModel;
  return options;
}

PlanScene planOf(const aiScene& model, const PlanOptions& options = asGiven()) {
  return makePlanScene(model, {"model.stl", kReader, {}}, options);
}

const KtFaceSet& facesOf(const KtSceneNode& leaf) {
  return *std::get<std::shared_ptr<const KtFaceSet>>(leaf.geometry.at(0));
}

std::string refusal(const aiScene& model, ExitCode expected) {
  try {
    planOf(model);
  } catch (const ModelError& error) {
    EXPECT_EQ(error.Code(), expected);
    return error.what();
  }
  ADD_FAILURE() << "not refused";
  return {};
}

TEST(PlanScene, ANodeWithMeshesIsAnObjectWithOneLeafForEach) {
  const auto model = makeModel({makeSquareMesh(), makeSquareMesh()},
                               makeNode("house", shiftedBy(3, 4, 5), {0, 1}));
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 1u);
  const KtSceneNode& object = plan.scene.nodes[0];
  EXPECT_EQ(object.objectId, u"house");
  EXPECT_FALSE(object.realObjectId.empty());
  EXPECT_FALSE(object.graphicName.empty());
  EXPECT_FALSE(object.color);
  EXPECT_TRUE(object.geometry.empty());
  EXPECT_EQ(object.matrix.Data()[12], 3.0);
  EXPECT_EQ(object.matrix.Data()[13], 4.0);
  ASSERT_EQ(object.children.size(), 2u);
  for (const KtSceneNode& leaf : object.children) {
    EXPECT_TRUE(leaf.objectId.empty());
    EXPECT_TRUE(leaf.realObjectId.empty());
    EXPECT_TRUE(leaf.graphicName.empty());
    EXPECT_EQ(facesOf(leaf).indices, (std::vector<int>{0, 1, 2, 3, -7}));
  }
  EXPECT_EQ(plan.content.parts, 2u);
}

TEST(PlanScene, GroupsOnlyLendTheirTransforms) {
  aiNode* group = withChildren(
      makeNode("group", shiftedBy(10, 0, 0), {}),
      {makeNode("a", shiftedBy(1, 0, 0), {0}), makeNode("b", shiftedBy(2, 0, 0), {0})});
  const auto model = makeModel({makeSquareMesh()},
                               withChildren(makeNode("root", shiftedBy(100, 0, 0), {}), {group}));
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 2u);
  EXPECT_EQ(plan.scene.nodes[0].matrix.Data()[12], 111.0);
  EXPECT_EQ(plan.scene.nodes[1].matrix.Data()[12], 112.0);
}

TEST(PlanScene, ObjectsThatDifferByTurnAndShiftShareGraphicAndGeometry) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", shiftedBy(1, 2, 3), {0}), makeNode("b", turnedBy(0.7f), {0}),
                    makeNode("c", shiftedBy(5, 0, 0) * turnedBy(-2.0f), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 3u);
  for (const KtSceneNode& object : plan.scene.nodes) {
    EXPECT_EQ(object.graphicName, plan.scene.nodes[0].graphicName);
    EXPECT_EQ(&facesOf(object.children.at(0)), &facesOf(plan.scene.nodes[0].children.at(0)));
  }
  EXPECT_EQ(plan.content.objects, 3u);
  EXPECT_EQ(plan.content.instances, 2u);
  EXPECT_EQ(plan.content.parts, 1u);
}

TEST(PlanScene, ScaleMirrorAndTiltGoIntoTheVertices) {
  aiNode* root = withChildren(
      makeNode("root", aiMatrix4x4(), {}),
      {makeNode("plain", aiMatrix4x4(), {0}), makeNode("scaled", scaledBy(2, 3, 1), {0}),
       makeNode("mirrored", scaledBy(1, -1, 1), {0}), makeNode("tilted", tiltedBy(0.5f), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 4u);
  EXPECT_EQ(plan.content.instances, 0u);
  for (std::size_t a = 0; a < 4; ++a) {
    const double* m = plan.scene.nodes[a].matrix.Data();
    EXPECT_EQ(m[0], 1.0);
    EXPECT_EQ(m[5], 1.0);
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_NE(plan.scene.nodes[a].graphicName, plan.scene.nodes[b].graphicName);
    }
  }
  const std::vector<double>& scaled = facesOf(plan.scene.nodes[1].children.at(0)).coords;
  EXPECT_EQ(scaled, (std::vector<double>{0, 0, 0, 2, 0, 0, 2, 3, 0, 0, 3, 0}));
  const std::vector<double>& mirrored = facesOf(plan.scene.nodes[2].children.at(0)).coords;
  EXPECT_EQ(mirrored[7], -1.0);
}

TEST(PlanScene, DifferentMeshesAreDifferentGraphics) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("a", aiMatrix4x4(), {1})});
  const auto model = makeModel({makeSquareMesh(), makeSquareMesh()}, root);
  const PlanScene plan = planOf(*model);
  EXPECT_NE(plan.scene.nodes.at(0).graphicName, plan.scene.nodes.at(1).graphicName);
  EXPECT_NE(plan.scene.nodes.at(0).objectId, plan.scene.nodes.at(1).objectId);
}

TEST(PlanScene, PolygonsAndLinesOfOneMeshAreTwoLeaves) {
  const auto model = makeModel(
      {makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {5, 5, 0}}, {{0, 1, 2}, {2, 3}, {0}, {1, 1, 1}})},
      makeNode("mixed", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model);
  const KtSceneNode& object = plan.scene.nodes.at(0);
  ASSERT_EQ(object.children.size(), 2u);
  EXPECT_EQ(facesOf(object.children[0]).indices, (std::vector<int>{0, 1, 2, -7}));
  const auto lines = std::get<std::shared_ptr<const KtLineSet>>(object.children[1].geometry.at(0));
  EXPECT_EQ(lines->indices, (std::vector<int>{2, 3, -6}));
  EXPECT_EQ(plan.content.points, 1u);
  EXPECT_EQ(plan.content.degenerateFaces, 1u);
  EXPECT_EQ(plan.content.extent.maxX, 5.0);
}

TEST(PlanScene, DiffuseColorIsTheLeafsAndBaseColorGoesFirst) {
  const auto model = makeModel({makeSquareMesh(0), makeSquareMesh(1), makeSquareMesh(2)},
                               makeNode("house", aiMatrix4x4(), {0, 1, 2}));
  model->mNumMaterials = 3;
  model->mMaterials = new aiMaterial*[3];
  for (unsigned i = 0; i < 3; ++i) {
    model->mMaterials[i] = new aiMaterial;
  }
  const aiColor4D diffuse(0.25f, 2.0f, -1.0f, 1.0f);
  const aiColor4D base(0.5f, 0.5f, 0.5f, 1.0f);
  model->mMaterials[0]->AddProperty(&diffuse, 1, AI_MATKEY_COLOR_DIFFUSE);
  model->mMaterials[1]->AddProperty(&diffuse, 1, AI_MATKEY_COLOR_DIFFUSE);
  model->mMaterials[1]->AddProperty(&base, 1, AI_MATKEY_BASE_COLOR);
  const PlanScene plan = planOf(*model);
  const std::vector<KtSceneNode>& leaves = plan.scene.nodes.at(0).children;
  EXPECT_EQ(leaves.at(0).color, (std::array<double, 3>{0.25, 1.0, 0.0}));
  EXPECT_EQ(leaves.at(1).color, (std::array<double, 3>{0.5, 0.5, 0.5}));
  EXPECT_EQ(leaves.at(2).color, kDefaultPen);
}

TEST(PlanScene, ScaleAndViewApplyToTheWholeModel) {
  const auto model = makeModel({makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}}, {{0, 1, 2}})},
                               makeNode("wall", shiftedBy(1, 7, 2), {0}));
  PlanOptions options;
  options.view.linear = {1, 0, 0, 0, 0, -1, 0, 1, 0};
  options.scale = 1000.0;
  const PlanScene plan = planOf(*model, options);
  EXPECT_EQ(plan.content.extent.minX, 1000.0);
  EXPECT_EQ(plan.content.extent.maxX, 2000.0);
  EXPECT_EQ(plan.content.extent.minY, 2000.0);
  EXPECT_EQ(plan.content.extent.maxY, 3000.0);
}

TEST(PlanScene, SharedObjectsOfWhichNothingShowsAreNotPlaced) {
  // Every edge is shared by three faces.
  aiMesh* unseen = makeMesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}, {0, 1, 2}, {0, 1, 2}});
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("b", shiftedBy(5, 0, 0), {0}),
                    makeNode("c", shiftedBy(9, 0, 0), {1})});
  const auto model = makeModel({unseen, makeSquareMesh()}, root);
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 1u);
  EXPECT_EQ(plan.scene.nodes[0].objectId, u"c");
  EXPECT_EQ(plan.content.unseenObjects, 2u);
  EXPECT_EQ(plan.content.extent.minX, 9.0);
}

TEST(PlanScene, BrokenVerticesAreRefusedByName) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const auto model = makeModel({makeMesh({{0, 0, 0}, {1, 0, 0}, {1, nan, 0}}, {{0, 1, 2}})},
                               makeNode("a", aiMatrix4x4(), {0}));
  const std::string sentence = refusal(*model, kExitInput);
  EXPECT_NE(sentence.find("model.stl"), std::string::npos) << sentence;
  EXPECT_NE(sentence.find("mesh 0 'mesh'"), std::string::npos) << sentence;
  EXPECT_NE(sentence.find("vertex 2"), std::string::npos) << sentence;
}

TEST(PlanScene, FacesThatNameNoVertexAreRefused) {
  const auto model = makeModel(
      {makeSquareMesh(), makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {{0, 1, 2}, {0, 1, 3}})},
      makeNode("a", aiMatrix4x4(), {0, 1}));
  const std::string sentence = refusal(*model, kExitInput);
  EXPECT_NE(sentence.find("mesh 1"), std::string::npos) << sentence;
  EXPECT_NE(sentence.find("face 1 names vertex 3 of 3"), std::string::npos) << sentence;
}

TEST(PlanScene, TransformsOutOfRangeAreRefused) {
  const float infinity = std::numeric_limits<float>::infinity();
  const auto model = makeModel({makeSquareMesh()}, makeNode("far", shiftedBy(infinity, 0, 0), {0}));
  EXPECT_NE(refusal(*model, kExitInput).find("'far'"), std::string::npos);
}

TEST(PlanScene, AMissingMeshIsRefused) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("a", aiMatrix4x4(), {1}));
  EXPECT_NE(refusal(*model, kExitInput).find("mesh 1"), std::string::npos);
}

TEST(PlanScene, NothingToDrawIsReported) {
  const auto points = makeModel({makeMesh({{0, 0, 0}}, {{0}})}, makeNode("a", aiMatrix4x4(), {0}));
  EXPECT_NE(refusal(*points, kExitNothingToDraw).find("points"), std::string::npos);
  const auto empty = makeModel({}, makeNode("a", aiMatrix4x4(), {}));
  EXPECT_NE(refusal(*empty, kExitNothingToDraw).find("model.stl"), std::string::npos);
}

TEST(PlanScene, NullChildrenAreSkipped) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("b", aiMatrix4x4(), {})});
  delete root->mChildren[1];
  root->mChildren[1] = nullptr;
  const auto model = makeModel({makeSquareMesh()}, root);
  EXPECT_EQ(planOf(*model).content.objects, 1u);
  // The library's own destructor frees null children, too.
}

TEST(PlanScene, ADeepHierarchyIsWalkedWithoutTheStack) {
  // Unlinked below, since the library frees nodes recursively.
  std::vector<aiNode*> chain;
  for (int i = 0; i < 200000; ++i) {
    chain.push_back(makeNode("n", shiftedBy(1, 0, 0), {}));
    if (i != 0) {
      withChildren(chain[chain.size() - 2], {chain.back()});
    }
  }
  withChildren(chain.back(), {makeNode("leaf", aiMatrix4x4(), {0})});
  const auto model = makeModel({makeSquareMesh()}, chain.front());
  const PlanScene plan = planOf(*model);
  EXPECT_EQ(plan.scene.nodes.at(0).matrix.Data()[12], 200000.0);
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
    chain[i]->mNumChildren = 0;
  }
  for (std::size_t i = 1; i < chain.size(); ++i) {
    delete chain[i];
  }
}

}  // namespace
}  // namespace dxf2d
