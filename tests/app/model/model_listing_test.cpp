#include "app/model/model_listing.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/model/model_objects.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

std::vector<ListedNode> listOf(const aiScene& model, const ObjectFilter& filter = {}) {
  const ModelSource source{"house.stl", "", {}};
  LimitChecker limits({}, source.path);
  return listNodes(model, Affine{}, filter, source, limits);
}

std::unique_ptr<aiScene> makeRoom() {
  aiNode* chairs = withChildren(
      makeNode("chairs", aiMatrix4x4(), {}),
      {makeNode("chair", shiftedBy(2, 0, 0), {0}), makeNode("chair", shiftedBy(5, 0, 0), {0})});
  return makeModel({makeSquareMesh(), makeSquareMesh()},
                   withChildren(makeNode("room", aiMatrix4x4(), {}),
                                {chairs, makeNode("table", shiftedBy(0, 3, 0), {1})}));
}

TEST(ModelListing, GroupsCountWhatIsBelowThem) {
  const auto nodes = listOf(*makeRoom());
  ASSERT_EQ(nodes.size(), 5u);
  EXPECT_EQ(nodes[0].objects, 3u);
  EXPECT_EQ(nodes[0].instances, 1u);
  EXPECT_EQ(nodes[0].triangles, 6u);
  EXPECT_EQ(nodes[0].parent, kNoParent);
  EXPECT_EQ(nodes[1].name, "chairs");
  EXPECT_EQ(nodes[1].objects, 2u);
  EXPECT_EQ(nodes[1].instances, 1u);
  EXPECT_EQ(nodes[2].path, "room/chairs/chair");
  EXPECT_EQ(nodes[2].depth, 2u);
}

TEST(ModelListing, SizesAreThoseOfTheBoxAroundAll) {
  const auto nodes = listOf(*makeRoom());
  EXPECT_EQ(nodes[1].greatest[0] - nodes[1].least[0], 4.0);
  EXPECT_EQ(nodes[0].greatest[0] - nodes[0].least[0], 6.0);
  EXPECT_EQ(nodes[0].greatest[1] - nodes[0].least[1], 4.0);
}

TEST(ModelListing, HoldsOnlyWhatIsChosenAndWhatLeadsToIt) {
  const auto nodes = listOf(*makeRoom(), {{"table"}, {}});
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_EQ(nodes[1].name, "table");
  EXPECT_EQ(nodes[1].parent, 0u);
  EXPECT_EQ(nodes[0].objects, 1u);
}

TEST(ModelListing, AsTextIsALineForEachNode) {
  const std::string text = listingAsText(listOf(*makeRoom()), kMeter);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6);
  EXPECT_NE(text.find("      3         1         6       -  room  6 x 4 x 0\n"), std::string::npos)
      << text;
}

TEST(ModelListing, AsJsonHoldsEveryField) {
  const auto json = nlohmann::json::parse(listingAsJson(listOf(*makeRoom()), kMeter, "a.stl"));
  EXPECT_EQ(json["unit"], "m");
  EXPECT_EQ(json["model"], "a.stl");
  const auto& table = json["nodes"][4];
  EXPECT_EQ(table["name"], "table");
  EXPECT_EQ(table["path"], "room/table");
  EXPECT_EQ(table["parent"], 0);
  EXPECT_EQ(table["objects"], 1);
  EXPECT_EQ(table["triangles"], 2);
  EXPECT_EQ(table["size"], nlohmann::json({1.0, 1.0, 0.0}));
  EXPECT_TRUE(table["color"].is_null());
  EXPECT_TRUE(json["nodes"][0]["parent"].is_null());
}

TEST(ModelListing, NamesThatAreNotUtf8AreListed) {
  const auto model = makeModel({makeSquareMesh()}, makeNode("a\xFC", aiMatrix4x4(), {0}));
  EXPECT_NO_THROW(listingAsJson(listOf(*model), {}, "a.stl"));
}

}  // namespace
}  // namespace dxf2d
