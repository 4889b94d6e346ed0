// Plans whose objects have labels.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "app/model/plan_label.h"
#include "app/model/plan_scene.h"
#include "tests/app/model/label_reading.h"
#include "tests/app/model/model_builder.h"

namespace {

PlanScene planOf(const aiScene& model, PlanOptions options = {}) {
  // A reader that leaves z up, so that plans show the models as they are written here.
  return makePlanScene(model, "Stereolithography (STL) Importer", "model.stl", options);
}

PlanScene labelledPlanOf(const aiScene& model, PlanOptions options = {}) {
  options.labels = PlanLabels::kName;
  return planOf(model, options);
}

std::vector<const KtSceneNode*> labelsOf(const PlanScene& plan) {
  std::vector<const KtSceneNode*> labels;
  for (const KtSceneNode& node : plan.scene.nodes) {
    if (node.label != nullptr) labels.push_back(&node);
  }
  EXPECT_EQ(labels.size(), plan.content.labels);
  return labels;
}

std::u16string lineOf(const KtSceneNode& node) { return readLabel(node).lines.at(0); }

std::vector<std::u16string> linesOf(const PlanScene& plan) {
  std::vector<std::u16string> lines;
  for (const KtSceneNode* label : labelsOf(plan)) lines.push_back(lineOf(*label));
  return lines;
}

void giveColors(aiScene& model, const std::vector<aiColor3D>& colors) {
  model.mNumMaterials = static_cast<unsigned>(colors.size());
  model.mMaterials = new aiMaterial*[colors.size()];
  for (std::size_t i = 0; i < colors.size(); ++i) {
    model.mMaterials[i] = new aiMaterial;
    model.mMaterials[i]->AddProperty(&colors[i], 1, AI_MATKEY_COLOR_DIFFUSE);
  }
}

// A line on end, which is a point seen from above.
aiMesh* makeUnseenMesh() { return makeMesh({{0, 0, 0}, {0, 0, 1}}, {{0, 1}}); }

TEST(LabelledPlan, NoObjectHasALabelUnlessAsked) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("house", aiMatrix4x4(), {0}));
  EXPECT_TRUE(labelsOf(planOf(*model)).empty());
}

TEST(LabelledPlan, TenInstancesOfOneChairShowTenNames) {
  std::vector<aiNode*> chairs;
  for (int i = 0; i < 10; ++i) {
    const std::string name = "chair " + std::to_string(i);
    chairs.push_back(makeNode(name.c_str(), shiftedBy(static_cast<float>(2 * i), 0, 0), {0}));
  }
  const auto model =
      makeModel({makeSquareMesh()}, withChildren(makeNode("room", aiMatrix4x4(), {}), chairs));
  const PlanScene plan = labelledPlanOf(*model);
  EXPECT_EQ(plan.content.objects, 10u);
  EXPECT_EQ(plan.content.instances, 9u);
  const auto labels = labelsOf(plan);
  ASSERT_EQ(labels.size(), 10u);
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const std::string name = "chair " + std::to_string(i);
    EXPECT_EQ(lineOf(*labels[i]), std::u16string(name.begin(), name.end()));
    EXPECT_EQ(labels[i]->matrix.Data()[12], 2.0 * static_cast<double>(i) + 0.5);
    EXPECT_EQ(labels[i]->matrix.Data()[13], 0.5);
  }
}

TEST(LabelledPlan, EveryLabelHasNamesThatNoOtherNodeHas) {
  aiNode* root =
      withChildren(makeNode("label", aiMatrix4x4(), {0}),
                   {makeNode("label", aiMatrix4x4(), {0}), makeNode("label 2", aiMatrix4x4(), {0}),
                    makeNode("label 3", aiMatrix4x4(), {0}), makeNode("", aiMatrix4x4(), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  const PlanScene plan = labelledPlanOf(*model);
  std::multiset<std::u16string> objectIds;
  std::multiset<std::u16string> graphicNames;
  for (const KtSceneNode& node : plan.scene.nodes) {
    objectIds.insert(node.objectId);
    graphicNames.insert(node.graphicName);
  }
  ASSERT_EQ(labelsOf(plan).size(), 5u);
  for (const KtSceneNode* label : labelsOf(plan)) {
    EXPECT_EQ(objectIds.count(label->objectId), 1u);
    EXPECT_EQ(graphicNames.count(label->graphicName), 1u);
    EXPECT_EQ(label->realObjectId, u"");
    EXPECT_TRUE(label->children.empty());
  }
}

TEST(LabelledPlan, EqualNamesStayEqual) {
  aiNode* root = withChildren(
      makeNode("room", aiMatrix4x4(), {}),
      {makeNode("chair", aiMatrix4x4(), {0}), makeNode("chair", shiftedBy(2, 0, 0), {0})});
  const auto model = makeModel({makeSquareMesh()}, root);
  EXPECT_EQ(linesOf(labelledPlanOf(*model)), (std::vector<std::u16string>{u"chair", u"chair"}));
}

TEST(LabelledPlan, ObjectsAreTheSameAsWithoutLabels) {
  aiNode* root =
      withChildren(makeNode("room", aiMatrix4x4(), {0}),
                   {makeNode("chair", turnedBy(0.3f), {0, 1}), makeNode("mast", aiMatrix4x4(), {2}),
                    makeNode("chair", shiftedBy(2, 0, 0), {0, 1})});
  const auto model = makeModel({makeSquareMesh(), makeSquareMesh(), makeUnseenMesh()}, root);
  const PlanScene bare = planOf(*model);
  const PlanScene labelled = labelledPlanOf(*model);
  ASSERT_EQ(labelled.scene.nodes.size(), bare.scene.nodes.size() + labelled.content.labels);
  for (std::size_t i = 0; i < bare.scene.nodes.size(); ++i) {
    EXPECT_EQ(labelled.scene.nodes[i].objectId, bare.scene.nodes[i].objectId);
    EXPECT_EQ(labelled.scene.nodes[i].graphicName, bare.scene.nodes[i].graphicName);
    EXPECT_EQ(labelled.scene.nodes[i].children.size(), bare.scene.nodes[i].children.size());
  }
  EXPECT_EQ(labelled.content.objects, bare.content.objects);
  EXPECT_EQ(labelled.content.parts, bare.content.parts);
  EXPECT_EQ(labelled.content.extent.maxX, bare.content.extent.maxX);
}

TEST(LabelledPlan, AnObjectOfWhichNothingShowsHasNone) {
  aiNode* root = withChildren(
      makeNode("house", aiMatrix4x4(), {0}),
      {makeNode("mast", aiMatrix4x4(), {1}), makeNode("twin", aiMatrix4x4(), {2}),
       makeNode("twin", shiftedBy(1, 0, 0), {2}), makeNode("points", aiMatrix4x4(), {3})});
  const auto model = makeModel(
      {makeSquareMesh(), makeUnseenMesh(), makeUnseenMesh(), makeMesh({{0, 0, 0}}, {{0}})}, root);
  EXPECT_EQ(linesOf(labelledPlanOf(*model)), (std::vector<std::u16string>{u"house"}));
}

TEST(LabelledPlan, ANodeWithoutANameLendsItsMeshs) {
  aiMesh* nameless = makeSquareMesh();
  nameless->mName = " \n";
  aiMesh* named = makeSquareMesh();
  named->mName = "seat";
  aiNode* root =
      withChildren(makeNode("", aiMatrix4x4(), {0, 1}),
                   {makeNode(" ", aiMatrix4x4(), {1}), makeNode("", aiMatrix4x4(), {0})});
  const auto model = makeModel({nameless, named}, root);
  EXPECT_EQ(linesOf(labelledPlanOf(*model)),
            (std::vector<std::u16string>{u"seat", u"seat", u"unnamed"}));
}

TEST(LabelledPlan, AnyNameIsAscii) {
  const auto model = makeModel({makeSquareMesh()},
                               makeNode("K\u00FCche \"\\\" \U0001F600 \xFC", aiMatrix4x4(), {0}));
  EXPECT_EQ(linesOf(labelledPlanOf(*model)),
            (std::vector<std::u16string>{u"K\\U+00FCche \"\\\" \\U+D83D\\U+DE00 \\U+FFFD"}));
}

TEST(LabelledPlan, ColourIsThatOfTheFirstPart) {
  aiNode* root = withChildren(makeNode("red", aiMatrix4x4(), {0, 1}),
                              {makeNode("green", aiMatrix4x4(), {1, 0})});
  const auto model = makeModel({makeSquareMesh(0), makeSquareMesh(1)}, root);
  giveColors(*model, {{1, 0, 0}, {0, 1, 0}});
  const PlanScene plan = labelledPlanOf(*model);
  const auto labels = labelsOf(plan);
  ASSERT_EQ(labels.size(), 2u);
  EXPECT_EQ(readLabel(*labels[0]).color, (std::array<double, 3>{1, 0, 0}));
  EXPECT_EQ(readLabel(*labels[1]).color, (std::array<double, 3>{0, 1, 0}));
  EXPECT_EQ(labels[0]->label->colorIndex, 0);
}

TEST(LabelledPlan, WithoutAMaterialTheColourIsThatOfBareOutlines) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("house", aiMatrix4x4(), {0}));
  EXPECT_EQ(labelsOf(labelledPlanOf(*model)).at(0)->label->colorIndex, 254);
}

TEST(LabelledPlan, StandsInTheMiddleOfWhatIsTurned) {
  // Turned by 45 degrees about its corner, it reaches from -3/sqrt(2) to 1/sqrt(2) and up to
  // 4/sqrt(2).
  aiMesh* mesh = makeMesh({{0, 0, 0}, {1, 0, 0}, {1, 3, 0}, {0, 3, 0}}, {{0, 1, 2, 3}});
  const auto model =
      makeModel({mesh}, makeNode("a", shiftedBy(10, 20, 7) * turnedBy(0.785398163f), {0}));
  const PlanScene plan = labelledPlanOf(*model);
  const double* matrix = labelsOf(plan).at(0)->matrix.Data();
  EXPECT_NEAR(matrix[12], 10.0 - 1.0 / std::sqrt(2.0), 1e-6);
  EXPECT_NEAR(matrix[13], 20.0 + 2.0 / std::sqrt(2.0), 1e-6);
  EXPECT_EQ(matrix[0], 1.0);
  EXPECT_EQ(matrix[1], 0.0);
}

TEST(LabelledPlan, HeightIsAHundredthOfThePlanUnlessGiven) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("a", scaledBy(4, 2, 1), {0}));
  EXPECT_DOUBLE_EQ(readLabel(*labelsOf(labelledPlanOf(*model)).at(0)).height, 0.04);
  PlanOptions options;
  options.scale = 100.0;
  EXPECT_DOUBLE_EQ(readLabel(*labelsOf(labelledPlanOf(*model, options)).at(0)).height, 4.0);
  options.labelHeight = 0.25;
  EXPECT_EQ(readLabel(*labelsOf(labelledPlanOf(*model, options)).at(0)).height, 0.25);
}

}  // namespace
