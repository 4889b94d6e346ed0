#include "ktscene/kt_scene_reader.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdio>

#include "tests/ktscene/scene_file.h"

namespace {

KtScene parse(const std::string& json) { return ParseScene(json, "test.json"); }

// The one node of a scene whose members are given.
KtSceneNode node(const std::string& members) {
  KtScene scene = parse("{\"nodes\":[{" + members + "}]}");
  EXPECT_EQ(scene.nodes.size(), 1u);
  return std::move(scene.nodes.at(0));
}

KtFaceSet faceSet(const std::string& members) {
  const KtSceneNode holder = node("\"geometry\":[{\"faceSet\":{" + members + "}}]");
  return *std::get<std::shared_ptr<const KtFaceSet>>(holder.geometry.at(0));
}

std::vector<double> coords(const std::string& numbers) {
  return faceSet("\"indices\":[],\"coords\":[" + numbers + "]").coords;
}

}  // namespace

TEST(ParseScene, SmallestSceneHasNoNodes) {
  EXPECT_TRUE(parse(R"({"nodes":[]})").nodes.empty());
  EXPECT_TRUE(parse(R"({ "version": 1, "nodes": [], "format": "ktscene" })").nodes.empty());
}

TEST(ParseScene, EmptyNodeHasTheDefaults) {
  const KtSceneNode n = node("");
  EXPECT_TRUE(n.graphicName.empty() && n.objectId.empty() && n.realObjectId.empty());
  EXPECT_TRUE(n.hasGraphicItem);
  EXPECT_EQ(n.matrix.Data()[0], 1.0);
  EXPECT_EQ(n.matrix.Data()[12], 0.0);
  EXPECT_FALSE(n.color.has_value());
  EXPECT_EQ(n.material, nullptr);
  EXPECT_TRUE(n.geometry.empty() && n.children.empty());
  EXPECT_TRUE(n.label == nullptr && n.bounds == nullptr && n.lod == nullptr);
}

TEST(ParseScene, ReadsEveryMemberOfANode) {
  const KtSceneNode n = node(R"(
    "graphicName": "g", "objectId": "o", "realObjectId": "r", "item": false,
    "matrix": [1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 10, 11, 12, 1],
    "color": [0, 0.5, 1],
    "label": {"text": "T:x", "colorIndex": -7},
    "bounds": {"min": [-1, -2, -3], "max": [1, 2, 3]},
    "children": [{"objectId": "c1"}, {"objectId": "c2"}])");
  EXPECT_EQ(n.graphicName, u"g");
  EXPECT_EQ(n.objectId, u"o");
  EXPECT_EQ(n.realObjectId, u"r");
  EXPECT_FALSE(n.hasGraphicItem);
  EXPECT_EQ(n.matrix.Data()[6], 6.0);
  EXPECT_EQ(n.matrix.Data()[14], 12.0);
  EXPECT_EQ(n.color, (std::array<double, 3>{0, 0.5, 1}));
  ASSERT_NE(n.label, nullptr);
  EXPECT_EQ(n.label->text, u"T:x");
  EXPECT_EQ(n.label->colorIndex, -7);
  ASSERT_NE(n.bounds, nullptr);
  EXPECT_EQ(n.bounds->min, (std::array<double, 3>{-1, -2, -3}));
  EXPECT_EQ(n.bounds->max, (std::array<double, 3>{1, 2, 3}));
  ASSERT_EQ(n.children.size(), 2u);
  EXPECT_EQ(n.children[1].objectId, u"c2");
}

TEST(ParseScene, MatrixIsTakenAsItIs) {
  const KtSceneNode n = node(R"("matrix": [0, 0, 0, -0.0, 3, 3, 3, 0, 0, 0, 0, 0, 0, 0, 0, 1.0])");
  EXPECT_EQ(n.matrix.Data()[0], 0.0);
  EXPECT_EQ(n.matrix.Data()[4], 3.0);
  EXPECT_TRUE(std::signbit(n.matrix.Data()[3]));
}

TEST(ParseScene, ReadsGeometryInItsOrder) {
  const KtSceneNode n = node(R"("geometry": [
    {"cylinder": [2, 5]},
    {"lineSet": {"indices": [0, 1, -6], "coords": [0, 0, 0, 1, 1, 1]}},
    {"box": [1, 2, 3]},
    {"faceSet": {"coords": [0, 0, 0], "indices": [0, 0, 0, -7]}}])");
  ASSERT_EQ(n.geometry.size(), 4u);
  EXPECT_EQ(std::get<KtCylinder>(n.geometry[0]).radius, 2);
  EXPECT_EQ(std::get<KtCylinder>(n.geometry[0]).height, 5);
  const auto& lines = std::get<std::shared_ptr<const KtLineSet>>(n.geometry[1]);
  EXPECT_EQ(lines->coords, (std::vector<double>{0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(lines->indices, (std::vector<int>{0, 1, -6}));
  EXPECT_EQ(std::get<KtBox>(n.geometry[2]).c, 3);
  const auto& faces = std::get<std::shared_ptr<const KtFaceSet>>(n.geometry[3]);
  EXPECT_EQ(faces->indices, (std::vector<int>{0, 0, 0, -7}));
}

TEST(ParseScene, FaceSetsDoNotShareTheirFlags) {
  const KtSceneNode n = node(R"("geometry": [
    {"faceSet": {"coords": [1], "indices": [2], "reverseOrientation": true, "closedSurface": false}},
    {"faceSet": {"coords": [], "indices": []}}])");
  const auto& first = std::get<std::shared_ptr<const KtFaceSet>>(n.geometry[0]);
  EXPECT_TRUE(first->reverseOrientation);
  EXPECT_FALSE(first->closedSurface);
  const auto& second = std::get<std::shared_ptr<const KtFaceSet>>(n.geometry[1]);
  EXPECT_FALSE(second->reverseOrientation);
  EXPECT_TRUE(second->closedSurface);
  EXPECT_TRUE(second->coords.empty() && second->indices.empty());
}

TEST(ParseScene, CoordinateListMayHaveAnyLength) {
  EXPECT_EQ(coords("1,2,3,4,5,6,7").size(), 7u);
  EXPECT_TRUE(coords("").empty());
}

TEST(ParseScene, ReadsALevelOfDetailGroup) {
  const KtSceneNode n = node(R"("lod": {"levels": [{"objectId": "a"}, {}], "ranges": [10, 20.5]})");
  ASSERT_NE(n.lod, nullptr);
  EXPECT_EQ(n.lod->ranges, (std::vector<double>{10, 20.5}));
  ASSERT_EQ(n.lod->levels.size(), 2u);
  EXPECT_EQ(n.lod->levels[0].objectId, u"a");
}

TEST(ParseScene, LevelOfDetailGroupNeedsNoRanges) {
  EXPECT_TRUE(node(R"("lod": {"levels": []})").lod->ranges.empty());
}

TEST(ParseScene, NumbersAreTheNearestDoubles) {
  const std::vector<double> numbers =
      coords("0.1, -1.5e3, 1E15, 123456789012345, 4.9e-324, 1000000000000000, 0.30000000000000004");
  EXPECT_EQ(numbers,
            (std::vector<double>{0.1, -1500, 1e15, 123456789012345, 4.9e-324, 1e15, 0.1 + 0.2}));
}

TEST(ParseScene, MinusZeroAndWhatRoundsToItKeepTheirSign) {
  for (const double zero : coords("-0, -0.0, -0e5, -1e-400")) {
    EXPECT_EQ(zero, 0.0);
    EXPECT_TRUE(std::signbit(zero));
  }
  EXPECT_FALSE(std::signbit(coords("0")[0]));
}

TEST(ParseScene, NumbersDoNotDependOnTheLocale) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  // Separators of one byte and of two.
  for (const char* locale : {"de_DE.UTF-8", "de_DE", "ps_AF", "fa_IR"}) {
    if (std::setlocale(LC_NUMERIC, locale) == nullptr) {
      continue;
    }
    EXPECT_EQ(coords("1.5, 0.25e1, 7"), (std::vector<double>{1.5, 2.5, 7})) << locale;
  }
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(ParseScene, IndicesHave32Bits) {
  EXPECT_EQ(faceSet(R"("coords": [], "indices": [2147483647, -2147483648, -0, -7])").indices,
            (std::vector<int>{2147483647, -2147483647 - 1, 0, -7}));
}

TEST(ParseScene, TextBecomesUtf16) {
  EXPECT_EQ(node(R"("graphicName": "Stühle € 😀")").graphicName, u"Stühle € 😀");
  EXPECT_EQ(node(R"("graphicName": "\u00fc\ud83d\ude00\/\t")").graphicName, u"ü😀/\t");
  EXPECT_EQ(node(R"("graphicName": "a\u0000b")").graphicName, std::u16string(u"a\0b", 3));
  EXPECT_EQ(node(R"("graphicName": "ü\u0000\uffff")").graphicName, std::u16string(u"ü\0\uFFFF", 3));
}

TEST(ParseScene, KeysMayBeWrittenWithEscapes) {
  EXPECT_EQ(node(R"("\u0067raphicName": "x")").graphicName, u"x");
}

TEST(ParseScene, ByteOrderMarkIsSkipped) {
  EXPECT_EQ(parse("\xEF\xBB\xBF{\"nodes\":[{}]}").nodes.size(), 1u);
}

TEST(ParseScene, LongCoordinateListsAreRead) {
  std::string numbers = "0";
  for (int i = 1; i < 300'000; ++i) {
    numbers += ',' + std::to_string(i);
  }
  const std::vector<double> read = coords(numbers);
  ASSERT_EQ(read.size(), 300'000u);
  EXPECT_EQ(read.back(), 299'999);
}

TEST(ReadSceneFile, ReadsAFile) {
  const TemporaryFile file("scene_reader_test.json", R"({"nodes":[{"objectId":"a"}]})");
  const KtScene scene = ReadSceneFile(file.Path());
  ASSERT_EQ(scene.nodes.size(), 1u);
  EXPECT_EQ(scene.nodes[0].objectId, u"a");
}

TEST(ReadSceneFile, RefusalNamesTheFile) {
  const TemporaryFile file("scene_reader_test_bad.json", R"({"nodes":[{"item":1}]})");
  EXPECT_EQ(refusal(file.Path()),
            file.Path() + ": /nodes/0/item: must be true or false, is an integer");
}

TEST(ReadSceneFile, NameThatIsNotUtf8IsShownAsUtf8) {
  EXPECT_EQ(refusal("no\xFFsuch.json"), "no\uFFFDsuch.json: there is no such file; check the name");
}

TEST(ReadSceneFile, NameWithAZeroByteIsRefusedAndNotCut) {
  const TemporaryFile file("scene_reader_test_zero", R"({"nodes":[]})");
  EXPECT_EQ(refusal(file.Path() + std::string("\0.json", 6)),
            file.Path() + "\\u0000.json: the name has a zero byte; check the name");
}

TEST(ReadSceneFile, DirectoryIsRefused) {
  const std::string directory = testing::TempDir();
  EXPECT_EQ(refusal(directory), directory + ": is a directory; name a scene file in it");
}

TEST(ReadSceneFile, PathThroughAFileIsRefused) {
  const TemporaryFile file("scene_reader_test_file", "x");
  EXPECT_THROW(ReadSceneFile(file.Path() + "/scene.json"), KtSceneError);
}
