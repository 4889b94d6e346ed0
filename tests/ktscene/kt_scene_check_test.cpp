#include "ktscene/kt_scene_check.h"

#include <gtest/gtest.h>

#include <limits>

#include "ktscene/kt_scene_reader.h"

namespace {

// "error /nodes/0: what is wrong", a line for each finding.
std::string findingsOf(const KtScene& scene) {
  std::string text;
  for (const KtSceneFinding& finding : KtCheckScene(scene)) {
    text += finding.severity == KtSeverity::kError ? "error " : "warning ";
    text += finding.node + ": " + finding.problem + "\n";
    EXPECT_NE(finding.remedy, "");
  }
  return text;
}

std::string findings(const std::string& nodes) {
  return findingsOf(ParseScene(R"({"nodes": [)" + nodes + "]}", "scene"));
}

constexpr const char* kSquare =
    R"("geometry": [{"faceSet": {"coords": [0,0,0, 1,0,0, 1,1,0], "indices": [0, 1, 2, -7]}}])";

std::string object(const std::string& more) {
  return R"({"graphicName": "g", "objectId": "o", "realObjectId": "o")" +
         (more.empty() ? "" : ", " + more) + "}";
}

}  // namespace

TEST(KtCheckScene, SoundSceneHasNoFindings) {
  EXPECT_EQ(findings(""), "");
  EXPECT_EQ(findings(object(kSquare)), "");
  EXPECT_EQ(findings(object(kSquare) + "," + object(kSquare)), "");
  EXPECT_EQ(
      findings(object(R"("matrix": [0,1,0,0,-1,0,0,0,0,0,1,0,5,6,7,1], )" + std::string(kSquare))),
      "");
  EXPECT_EQ(findings(object(R"("label": {"text": "T:1 1 0 0 0 0 0 L 0 0 0 0 0 \"a\""})")), "");
}

TEST(KtCheckScene, FindsWhatIsNotPlaced) {
  EXPECT_EQ(findings("{}, {" + std::string(kSquare) + "}"),
            "error /nodes/1: is in no object, and nothing places it\n");
  EXPECT_EQ(findings(R"({"objectId": "o", "realObjectId": "o", )" + std::string(kSquare) + "}"),
            "error /nodes/0: is an object without a graphicName, and is not placed\n");
  EXPECT_EQ(findings(object(R"("children": [{"children": [{)" + std::string(kSquare) + "}]}]")),
            "");
}

TEST(KtCheckScene, FindsIdsThatDoNotFit) {
  EXPECT_EQ(findings(R"({"graphicName": "g", "objectId": "o",
                         "matrix": [1,0,0,0,0,1,0,0,0,0,1,0,5,6,7,1], )" +
                     std::string(kSquare) + "}"),
            "warning /nodes/0: has an objectId but no realObjectId, and is moved twice\n");
  EXPECT_EQ(
      findings(object(R"("children": [{"graphicName": "p", "realObjectId": "p", )" +
                      std::string(kSquare) + "}]")),
      "warning /nodes/0/children/0: has a realObjectId but no objectId, and is missing where it "
      "is drawn as an instance\n");
}

TEST(KtCheckScene, FindsMatricesThatPlacementsDoNotCarry) {
  EXPECT_EQ(
      findings(object(R"("matrix": [2,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1], )" + std::string(kSquare))),
      "warning /nodes/0/matrix: has a scale, shear or mirroring in its matrix, which placements "
      "do not carry\n");
  KtScene tilted = ParseScene(R"({"nodes": [)" + object(kSquare) + "]}", "scene");
  tilted.nodes[0].matrix.Rotate(1.0, 0.0, 0.0, 0.02);
  EXPECT_EQ(findingsOf(tilted),
            "warning /nodes/0/matrix: is tilted by between 0.01 and 0.03 radians, and lies at the "
            "origin of the drawing\n");
  const double odd[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2};
  tilted.nodes[0].matrix.Init(odd);
  EXPECT_EQ(findingsOf(tilted),
            "error /nodes/0/matrix: has a matrix that is not affine and finite\n");
}

TEST(KtCheckScene, FindsFaultsOfSets) {
  const auto ofSet = [](const std::string& coords, const std::string& indices) {
    return findings(object(R"("geometry": [{"lineSet": {"coords": [)" + coords +
                           R"(], "indices": [)" + indices + "]}}]"));
  };
  const std::string at = "/nodes/0/geometry/0: ";
  EXPECT_EQ(ofSet("0,0,0,1,1,1", "0,1"),
            "error " + at + "has a last run without a code, which is not drawn\n");
  EXPECT_EQ(ofSet("0,0,0,1,1,1", "0,1,-6,2,0,-1"),
            "error " + at + "names point 2 of 2 (entry 3 of its indices)\n");
  EXPECT_EQ(ofSet("0,0,0,1,1,1", "0,1,-9"),
            "error " + at + "has the code -9, which means nothing (entry 2 of its indices)\n");
  EXPECT_EQ(ofSet("0,0,0,1,1,1,5", "0,1,-6"),
            "warning " + at + "has coordinates that make no whole point\n");
  EXPECT_EQ(ofSet("", "0,1,-6"), "warning " + at + "is empty\n");
}

TEST(KtCheckScene, FindsWhatNoFileHolds) {
  KtScene scene;
  KtSceneNode& node = scene.nodes.emplace_back();
  node.graphicName = node.objectId = node.realObjectId = u"o";
  node.geometry.emplace_back(std::make_shared<KtFaceSet>(KtFaceSet{
      {0, 0, 0, 1, std::numeric_limits<double>::quiet_NaN(), 0, 1, 1, 1}, {0, 1, 2, -7}}));
  EXPECT_EQ(findingsOf(scene),
            "error /nodes/0/geometry/0: has a point that is not finite (number 1)\n");
  node.geometry[0] = std::shared_ptr<const KtLineSet>();
  EXPECT_EQ(findingsOf(scene), "error /nodes/0/geometry/0: is null\n");
  node.geometry[0] = KtBox{1, 0, 1};
  EXPECT_EQ(findingsOf(scene), "error /nodes/0/geometry/0: is a box without extent\n");
  node.geometry[0] = KtBox{1, 1, 1};
  node.color = {0.0, 255.0, 0.0};
  EXPECT_EQ(findingsOf(scene), "warning /nodes/0/color: has a color component outside 0 to 1\n");
}

TEST(KtCheckScene, FindsLabelsThatFitNoSyntax) {
  EXPECT_EQ(
      findings(object(R"("label": {"text": "Hello"})")),
      "error /nodes/0/label: has a text that does not follow the syntax of labels, and is not "
      "drawn\n");
}

TEST(KtCheckScene, FindsBlocksOfOneName) {
  EXPECT_EQ(findings(object(std::string(kSquare) + R"(, "children": [{)" + kSquare + "}]")),
            "error /nodes/0: has geometry of its own and children with geometry, of which readers "
            "show one\n");
  EXPECT_EQ(findings(object(R"("geometry": [{"box": [1,1,1]}, {"box": [2,1,1]}])")),
            "error /nodes/0: has several sets, or a set and a label, of which readers show one\n");
}

TEST(KtCheckScene, FindsOneNameForTwoThings) {
  EXPECT_EQ(findings(object(kSquare) + "," + object(R"("geometry": [{"box": [1,1,1]}])")),
            "error /nodes/1: has the graphicName of a node that shows something else, and may be "
            "drawn as that\n");
  // What is below counts, too.
  EXPECT_EQ(findings(object(R"("children": [{"geometry": [{"box": [1,1,1]}]}])") + "," +
                     object(R"("children": [{"geometry": [{"box": [1,1,2]}]}])")),
            "error /nodes/1: has the graphicName of a node that shows something else, and may be "
            "drawn as that\n");
  EXPECT_NE(findings(object(R"("children": [)" + object(kSquare) + "]"))
                .find("has the graphicName of a node above it"),
            std::string::npos);
}

TEST(KtCheckScene, LooksIntoTheFirstLevelOnly) {
  EXPECT_EQ(
      findings(R"({"lod": {"levels": [{)" + std::string(kSquare) + R"(}, {)" + kSquare + "}]}}"),
      "error /nodes/0/lod/levels/0: is in no object, and nothing places it\n");
}
