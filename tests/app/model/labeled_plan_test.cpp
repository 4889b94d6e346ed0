// Plans whose objects have labels.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "app/model/plan_label.h"
#include "app/model/plan_scene.h"
#include "tests/app/model/label_reading.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

PlanScene planOf(const aiScene& model, PlanOptions options = {}) {
  // A reader that leaves z up, so that plans show the models as they are written here.
  return makePlanScene(model, {"model.stl", "Stereolithography (STL) Importer", {}}, options);
}

PlanScene labeledPlanOf(const aiScene& model, PlanOptions options = {}) {
  options.labels = PlanLabels::kName;
  return planOf(model, options);
}

std::vector<const KtSceneNode*> labelsOf(const PlanScene& plan) {
  std::vector<const KtSceneNode*> labels;
  for (const KtSceneNode& node : plan.scene.nodes) {
    if (node.label != nullptr) {
      labels.push_back(&node);
    }
  }
  EXPECT_EQ(labels.size(), plan.content.labels);
  return labels;
}

std::u16string lineOf(const KtSceneNode& node) { return readLabel(node).lines.at(0); }

std::vector<std::u16string> linesOf(const PlanScene& plan) {
  std::vector<std::u16string> lines;
  for (const KtSceneNode* label : labelsOf(plan)) {
    lines.push_back(lineOf(*label));
  }
  return lines;
}

// A line on end, which is a point seen from above.
aiMesh* makeUnseenMesh() { return makeMesh({{0, 0, 0}, {0, 0, 1}}, {{0, 1}}); }

TEST(LabeledPlan, NoObjectHasALabelUnlessAsked) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("house", aiMatrix4x4(), {0}));
  EXPECT_TRUE(labelsOf(planOf(*model)).empty());
}

TEST(LabeledPlan, TenInstancesOfOneChairShowTenNames) {
  std::vector<aiNode*> chairs;
  for (int i = 0; i < 10; ++i) {
    const std::string name = "chair no " + std::to_string(i);
    chairs.push_back(makeNode(name.c_str(), shiftedBy(static_cast<float>(2 * i), 0, 0), {0}));
  }
  const auto model =
      makeModel({makeSquareMesh()}, withChildren(makeNode("room", aiMatrix4x4(), {}), chairs));
  const PlanScene plan = labeledPlanOf(*model);
  EXPECT_EQ(plan.content.objects, 10u);
  EXPECT_EQ(plan.content.instances, 9u);
  const auto labels = labelsOf(plan);
  ASSERT_EQ(labels.size(), 10u);
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const std::string name = "chair no " + std::to_string(i);
    EXPECT_EQ(lineOf(*labels[i]), std::u16string(name.begin(), name.end()));
    EXPECT_EQ(labels[i]->matrix.Data()[12], 2.0 * static_cast<double>(i) + 0.5);
    EXPECT_EQ(labels[i]->matrix.Data()[13], 0.5);
  }
}

TEST(LabeledPlan, EveryLabelHasNamesThatNoOtherNodeHas) {
  aiNode* root =
      withChildren(makeNode("label", aiMatrix4x4(), {0}),
                   {makeNode("label", aiMatrix4x4(), {0}), makeNode("label 2", aiMatrix4x4(), {0}),
                    makeNode("label 3", aiMatrix4x4(), {0}), makeNode("", aiMatrix4x4(), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  const PlanScene plan = labeledPlanOf(*model);
  std::multiset<std::u16string> objectIds;
  std::multiset<std::u16string> graphicNames;
  for (const KtSceneNode& node : plan.scene.nodes) {
    objectIds.insert(node.objectId);
    graphicNames.insert(node.graphicName);
  }
  ASSERT_EQ(labelsOf(plan).size(), 4u);
  for (const KtSceneNode* label : labelsOf(plan)) {
    EXPECT_EQ(objectIds.count(label->objectId), 1u);
    EXPECT_EQ(graphicNames.count(label->graphicName), 1u);
    EXPECT_EQ(label->realObjectId, u"");
    EXPECT_TRUE(label->children.empty());
  }
}

TEST(LabeledPlan, EqualNamesStayEqual) {
  aiNode* root = withChildren(
      makeNode("room", aiMatrix4x4(), {}),
      {makeNode("chair", aiMatrix4x4(), {0}), makeNode("chair", shiftedBy(2, 0, 0), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  EXPECT_EQ(linesOf(labeledPlanOf(*model)), (std::vector<std::u16string>{u"chair", u"chair"}));
}

TEST(LabeledPlan, ObjectsAreTheSameAsWithoutLabels) {
  aiNode* root =
      withChildren(makeNode("room", aiMatrix4x4(), {0}),
                   {makeNode("chair", turnedBy(0.3f), {0, 1}), makeNode("mast", aiMatrix4x4(), {2}),
                    makeNode("chair", shiftedBy(2, 0, 0), {0, 1})});
  const auto model = makeModel({makeSquareMesh(), makeSquareMesh(), makeUnseenMesh()}, root);
  const PlanScene bare = planOf(*model);
  const PlanScene labeled = labeledPlanOf(*model);
  ASSERT_EQ(labeled.scene.nodes.size(), bare.scene.nodes.size() + labeled.content.labels);
  for (std::size_t i = 0; i < bare.scene.nodes.size(); ++i) {
    EXPECT_EQ(labeled.scene.nodes[i].objectId, bare.scene.nodes[i].objectId);
    EXPECT_EQ(labeled.scene.nodes[i].graphicName, bare.scene.nodes[i].graphicName);
    EXPECT_EQ(labeled.scene.nodes[i].children.size(), bare.scene.nodes[i].children.size());
  }
  EXPECT_EQ(labeled.content.objects, bare.content.objects);
  EXPECT_EQ(labeled.content.parts, bare.content.parts);
  EXPECT_EQ(labeled.content.extent.maxX, bare.content.extent.maxX);
}

TEST(LabeledPlan, AnObjectOfWhichNothingShowsHasNone) {
  aiNode* root = withChildren(
      makeNode("house", aiMatrix4x4(), {0}),
      {makeNode("mast", aiMatrix4x4(), {1}), makeNode("twin", aiMatrix4x4(), {2}),
       makeNode("twin", shiftedBy(1, 0, 0), {2}), makeNode("points", aiMatrix4x4(), {3})});
  const auto model = makeModel(
      {makeSquareMesh(), makeUnseenMesh(), makeUnseenMesh(), makeMesh({{0, 0, 0}}, {{0}})}, root);
  EXPECT_EQ(linesOf(labeledPlanOf(*model)), (std::vector<std::u16string>{u"house"}));
}

TEST(LabeledPlan, ANodeWithoutANameLendsItsMeshs) {
  aiMesh* nameless = makeSquareMesh();
  nameless->mName = " \n";
  aiMesh* named = makeSquareMesh();
  named->mName = "seat";
  aiNode* root =
      withChildren(makeNode("", aiMatrix4x4(), {0, 1}),
                   {makeNode(" ", aiMatrix4x4(), {1}), makeNode("", aiMatrix4x4(), {0})});
  const auto model = makeModel({nameless, named}, root);
  EXPECT_EQ(linesOf(labeledPlanOf(*model)), (std::vector<std::u16string>{u"seat", u"seat"}));
}

TEST(LabeledPlan, AnyNameIsAscii) {
  const auto model = makeModel({makeSquareMesh()},
                               makeNode("K\u00FCche \"\\\" \U0001F600 \xFC", aiMatrix4x4(), {0}));
  EXPECT_EQ(linesOf(labeledPlanOf(*model)),
            (std::vector<std::u16string>{u"K\\U+00FCche \"\\\" \\U+D83D\\U+DE00 \\U+FFFD"}));
}

TEST(LabeledPlan, AllLabelsHaveOnePen) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("house", aiMatrix4x4(), {0}));
  EXPECT_EQ(labelsOf(labeledPlanOf(*model)).at(0)->label->colorIndex, 7);
  PlanOptions options;
  options.labelColor = 3;
  EXPECT_EQ(labelsOf(labeledPlanOf(*model, options)).at(0)->label->colorIndex, 3);
}

TEST(LabeledPlan, ObjectsWithoutReadableNamesShareTheLabelOfTheirGroup) {
  aiNode* table = withChildren(
      makeNode("table.001", aiMatrix4x4(), {}),
      {makeNode("Mesh.001", aiMatrix4x4(), {0}), makeNode("nodes[2]", shiftedBy(4, 0, 0), {0})});
  aiMesh* nameless = makeSquareMesh();
  nameless->mName = "";
  const auto model = makeModel({nameless}, withChildren(makeNode("", aiMatrix4x4(), {}), {table}));
  const PlanScene plan = labeledPlanOf(*model);
  EXPECT_EQ(linesOf(plan), (std::vector<std::u16string>{u"table"}));
  EXPECT_EQ(labelsOf(plan)[0]->matrix.Data()[12], 2.5);
}

TEST(LabeledPlan, HelpersHaveNone) {
  const auto model =
      makeModel({makeSquareMesh()}, withChildren(makeNode("house", aiMatrix4x4(), {}),
                                                 {makeNode("house_bound", aiMatrix4x4(), {0}),
                                                  makeNode("Camera", aiMatrix4x4(), {0})}));
  EXPECT_TRUE(labelsOf(labeledPlanOf(*model)).empty());
}

TEST(LabeledPlan, LabelsWithoutRoomAreLeftOutAndCounted) {
  std::vector<aiNode*> piled;
  for (int i = 0; i < 30; ++i) {
    piled.push_back(makeNode("plate of a pile", aiMatrix4x4(), {0}));
  }
  const auto model =
      makeModel({makeSquareMesh()}, withChildren(makeNode("", aiMatrix4x4(), {}), piled));
  PlanOptions options;
  options.labelHeight = 0.3;
  const PlanScene plan = labeledPlanOf(*model, options);
  EXPECT_GT(plan.content.labelsLeftOut, 0u);
  EXPECT_EQ(labelsOf(plan).size() + plan.content.labelsLeftOut, 30u);
}

TEST(LabeledPlan, StandsInTheMiddleOfWhatIsTurned) {
  // Turned by 45 degrees about its corner, it reaches from -3/sqrt(2) to 1/sqrt(2) and up to
  // 4/sqrt(2).
  aiMesh* mesh = makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 3, 0}, {0, 3, 0}}, {{0, 1, 2, 3}});
  const auto model =
      makeModel({mesh}, makeNode("a", shiftedBy(10, 20, 7) * turnedBy(0.785398163f), {0}));
  const PlanScene plan = labeledPlanOf(*model);
  const double* matrix = labelsOf(plan).at(0)->matrix.Data();
  EXPECT_NEAR(matrix[12], 10.0 - 1.0 / std::sqrt(2.0), 1e-6);
  EXPECT_NEAR(matrix[13], 20.0 + 2.0 / std::sqrt(2.0), 1e-6);
  EXPECT_EQ(matrix[0], 1.0);
  EXPECT_EQ(matrix[1], 0.0);
}

TEST(LabeledPlan, HeightIsAHundredthOfThePlanUnlessGiven) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("a", scaledBy(4, 2, 1), {0}));
  EXPECT_DOUBLE_EQ(readLabel(*labelsOf(labeledPlanOf(*model)).at(0)).height, 0.04);
  PlanOptions options;
  options.scale = 100.0;
  EXPECT_DOUBLE_EQ(readLabel(*labelsOf(labeledPlanOf(*model, options)).at(0)).height, 4.0);
  options.labelHeight = 0.25;
  EXPECT_EQ(readLabel(*labelsOf(labeledPlanOf(*model, options)).at(0)).height, 0.25);
}

}  // namespace
}  // namespace dxf2d
