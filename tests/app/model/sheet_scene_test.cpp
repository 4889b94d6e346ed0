#include "app/model/sheet_scene.h"

#include <gtest/gtest.h>

#include <set>

#include "app/model/model_error.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

const std::vector<Corners> kCubeFaces{{3, 2, 1, 0}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                      {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

aiMesh* makeBox(float x, float y, float z) {
  return makeMesh(
      {{0, 0, 0}, {x, 0, 0}, {x, y, 0}, {0, y, 0}, {0, 0, z}, {x, 0, z}, {x, y, z}, {0, y, z}},
      kCubeFaces);
}

// Two boxes of 4 by 2 by 3, one behind the other as seen from the front.
std::unique_ptr<aiScene> makeTwoBoxes() {
  aiNode* root = withChildren(
      makeNode("root", aiMatrix4x4(), {}),
      {makeNode("near", aiMatrix4x4(), {0}), makeNode("far", shiftedBy(0, 6, 0), {0})});
  return makeModel({makeBox(4, 2, 3)}, root);
}

PlanScene sheetOf(const aiScene& model, const std::vector<std::string>& views,
                  const PlanOptions& options = {}) {
  return makeSheetScene(model, {"model.stl", "Stereolithography (STL) Importer", {}}, options,
                        {views, ProjectionAngle::kThird});
}

PlanOptions removing() {
  PlanOptions options;
  options.linework.hidden = HiddenLines::kRemove;
  return options;
}

std::array<double, 2> shiftOf(const KtSceneNode& node) {
  return {node.matrix.Data()[12], node.matrix.Data()[13]};
}

TEST(SheetScene, EachViewIsAGroupWithItsNameBelow) {
  const auto model = makeTwoBoxes();
  const PlanScene sheet = sheetOf(*model, {"front", "top"});
  ASSERT_EQ(sheet.scene.nodes.size(), 4u);
  EXPECT_EQ(sheet.content.views, 2u);
  EXPECT_EQ(shiftOf(sheet.scene.nodes[0]), (std::array{0.0, 0.0}));
  // The plan of 8 stands 0.15 x 8 above the front, whose height is 3.
  EXPECT_EQ(shiftOf(sheet.scene.nodes[2])[0], 0.0);
  EXPECT_DOUBLE_EQ(shiftOf(sheet.scene.nodes[2])[1], 3 + 0.15 * 8);
  EXPECT_EQ(sheet.scene.nodes[0].children.size(), 2u);
  ASSERT_NE(sheet.scene.nodes[1].label, nullptr);
  EXPECT_NE(sheet.scene.nodes[1].label->text.find(u"\"FRONT\""), std::u16string::npos);
  EXPECT_EQ(shiftOf(sheet.scene.nodes[1])[0], 2.0);
  EXPECT_LT(shiftOf(sheet.scene.nodes[1])[1], 0.0);
  EXPECT_NE(sheet.scene.nodes[3].label->text.find(u"\"TOP\""), std::u16string::npos);
}

TEST(SheetScene, NoTwoNodesShareAName) {
  const auto model = makeTwoBoxes();
  for (const PlanOptions& options : {PlanOptions(), removing()}) {
    const PlanScene sheet = sheetOf(*model, {"front", "top", "right", "iso"}, options);
    std::set<std::u16string> names;
    std::size_t count = 0;
    for (const KtSceneNode& node : sheet.scene.nodes) {
      for (const KtSceneNode& object : node.children) {
        names.insert(object.objectId);
        ++count;
      }
    }
    EXPECT_EQ(names.size(), count);
    EXPECT_EQ(names.count(u"near iso"), 1u);
  }
}

TEST(SheetScene, ViewsShareNoBlock) {
  const auto model = makeTwoBoxes();
  const PlanScene sheet = sheetOf(*model, {"front", "top"});
  const auto& front = sheet.scene.nodes[0].children;
  const auto& top = sheet.scene.nodes[2].children;
  EXPECT_EQ(front[0].graphicName, u"near front");
  EXPECT_EQ(top[0].graphicName, u"near top");
  EXPECT_EQ(top[1].graphicName, u"near top");
  EXPECT_EQ(sheet.content.instances, 2u);
  EXPECT_EQ(sheet.content.objects, 4u);
}

TEST(SheetScene, EachViewHidesByItself) {
  const auto model = makeTwoBoxes();
  const PlanScene sheet = sheetOf(*model, {"front", "top"}, removing());
  EXPECT_EQ(sheet.scene.nodes[0].children.size(), 1u);
  EXPECT_EQ(sheet.scene.nodes[2].children.size(), 2u);
  EXPECT_EQ(sheet.content.unseenObjects, 1u);
}

TEST(SheetScene, LabelsAreAsLargeInAllViews) {
  const auto model = makeTwoBoxes();
  PlanOptions options;
  options.labels = PlanLabels::kName;
  const PlanScene sheet = sheetOf(*model, {"front", "top"}, options);
  std::set<std::u16string> heights;
  for (const std::size_t view : {0U, 2U}) {
    for (const KtSceneNode& node : sheet.scene.nodes[view].children) {
      if (node.label != nullptr) {
        // "T:1 HEIGHT ..."
        heights.insert(node.label->text.substr(0, node.label->text.find(u' ', 4)));
      }
    }
  }
  EXPECT_EQ(heights, std::set<std::u16string>{u"T:1 0.04"});
  EXPECT_EQ(sheet.content.labels, 6u);
}

TEST(SheetScene, AViewInWhichNothingShowsIsLeftOut) {
  // A wire along z has no length from above.
  aiMesh* wire = makeMesh({{0, 0, 0}, {0, 0, 5}}, {{0, 1}});
  const auto model = makeModel({wire}, makeNode("wire", aiMatrix4x4(), {0}));
  const PlanScene sheet = sheetOf(*model, {"top", "front"}, removing());
  EXPECT_EQ(sheet.content.views, 1u);
  EXPECT_EQ(sheet.scene.nodes.size(), 2u);
  EXPECT_EQ(sheet.content.unseenObjects, 1u);
  EXPECT_THROW(sheetOf(*model, {"top", "bottom"}, removing()), ModelError);
}

}  // namespace
}  // namespace dxf2d
