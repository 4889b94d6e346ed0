#include "app/model/storey.h"

#include <gtest/gtest.h>

#include "app/cli/failure.h"
#include "app/model/plan_scene.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

// A column from the floor up.
aiMesh* makeColumn() {
  return makeMesh({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 2.4F}},
                  {{2, 1, 0}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}});
}

// Two storeys with a column each, the upper one 3 above the lower one.
std::unique_ptr<aiScene> makeBuilding() {
  aiNode* ground = withChildren(
      makeNode("IfcBuildingStorey_Ground_floor_0yBEy76WYo3DwzauJBQBOE", aiMatrix4x4(), {}),
      {makeNode("IfcColumn_low_0yBEy76WYo3DwzauJBQBOA", aiMatrix4x4(), {0})});
  aiNode* upper = withChildren(
      makeNode("IfcBuildingStorey_Upper_floor_0jAI9fmuuZo5Hq4Mzn$RGN", shiftedBy(0, 0, 3), {}),
      {withChildren(makeNode("$RelAggregates", aiMatrix4x4(), {}),
                    {makeNode("IfcColumn_high_0yBEy76WYo3DwzauJBQBOB", shiftedBy(5, 0, 0), {0})})});
  return makeModel({makeColumn()}, withChildren(makeNode("IfcBuilding_House", aiMatrix4x4(), {0}),
                                                {ground, upper}));
}

const ModelSource kMeters{"house.ifc", "Stereolithography (STL) Importer", kMeter};

TEST(FindStorey, ByNameOrPattern) {
  const auto model = makeBuilding();
  for (const char* name : {"Upper floor", "upper*", "IfcBuildingStorey_Upper*"}) {
    const Storey storey = findStorey(*model, {}, name, "house.ifc");
    EXPECT_EQ(storey.node, model->mRootNode->mChildren[1]) << name;
    EXPECT_EQ(storey.floor, 3.0) << name;
  }
}

TEST(FindStorey, NoneOrSeveralAreRefused) {
  const auto model = makeBuilding();
  for (const char* name : {"attic", "*floor", "House"}) {
    try {
      findStorey(*model, {}, name, "house.ifc");
      ADD_FAILURE() << name;
    } catch (const UsageError& error) {
      EXPECT_EQ(error.Text().remedy, "choose one of 'Ground floor', 'Upper floor'");
    }
  }
  const auto other = makeModel({makeSquareMesh()}, makeNode("a", aiMatrix4x4(), {0}));
  EXPECT_THROW(findStorey(*other, {}, "a", "a.obj"), UsageError);
}

TEST(StoreyPlan, HasItsOwnObjectsCutAboveItsFloor) {
  const auto model = makeBuilding();
  PlanOptions options;
  options.storey = "Upper floor";
  options.units = kMillimeter;
  const PlanScene plan = makePlanScene(*model, kMeters, options);
  ASSERT_EQ(plan.scene.nodes.size(), 1u);
  EXPECT_EQ(plan.scene.nodes[0].objectId, u"IfcColumn_high_0yBEy76WYo3DwzauJBQBOB");
  const KtSceneNode& cut = plan.scene.nodes[0].children.back();
  const auto& lines = *std::get<std::shared_ptr<const KtLineSet>>(cut.geometry.at(0));
  // Half way up the column.
  double right = 0.0;
  for (std::size_t i = 0; i < lines.coords.size(); i += 3) {
    right = std::max(right, lines.coords[i]);
  }
  EXPECT_NEAR(right, 6000.0, 1e-3);
}

TEST(StoreyPlan, NeedsTheModelsUnit) {
  const auto model = makeBuilding();
  PlanOptions options;
  options.storey = "Upper floor";
  EXPECT_THROW(makePlanScene(*model, {"house.stl", "", {}}, options), UsageError);
}

}  // namespace
}  // namespace dxf2d
