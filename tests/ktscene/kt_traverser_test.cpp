#include "ktscene/kt_traverser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "ktscene/kt_geometry.h"
#include "ktscene/kt_graphic_node.h"
#include "ktscene/kt_scene_reader.h"

namespace {

// What the callbacks below were called with, in order, and what they return.
struct Record {
  std::vector<std::string> calls;
  bool reuses = false;
  bool takesShapes = false;
  bool takesFaceGeometry = false;
  bool opensFile = true;
  bool closesFile = true;
  bool throwsAtFaceSet = false;
};
Record record;

void note(std::string call) { record.calls.push_back(std::move(call)); }

std::string nameOf(KtGraphicAttribute* attribute) {
  std::u16string name;
  attribute->GetGraphicName(name);
  return {name.begin(), name.end()};
}

std::string number(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return text;
}

std::string colorText(const double* color) {
  if (color == nullptr) {
    return "-";
  }
  return number(color[0]) + "," + number(color[1]) + "," + number(color[2]);
}

std::string setText(const std::vector<double>& coords, const std::vector<int>& indices) {
  return std::to_string(coords.size()) + " " + std::to_string(indices.size());
}

void openNode(KtGraphicAttribute* attribute) { note("open " + nameOf(attribute)); }
void closeNode() { note("close"); }
bool reuse(KtGraphicAttribute* attribute) {
  note("reuse " + nameOf(attribute));
  return record.reuses;
}
void openLod(const std::vector<double>& ranges, double distance) {
  note("lod " + std::to_string(ranges.size()) + " " + number(distance));
}
void closeLod() { note("close lod"); }
void boundingBox(const double* min, const double* max, double size) {
  note("bounds " + colorText(min) + " " + colorText(max) + " " + number(size));
}
void material(const double* ambient, const double* diffuse, const double* specular,
              const double* emission, const double* shininess, const double* transparency) {
  note("material " + colorText(ambient) + " " + colorText(diffuse) + " " + colorText(specular) +
       " " + colorText(emission) + " " + (shininess != nullptr ? number(*shininess) : "-") + " " +
       (transparency != nullptr ? number(*transparency) : "-"));
}
void matrix(const double* data) { note("matrix " + number(data[12])); }
bool faceGeometry(const std::vector<double>& coords, const std::vector<int>& coordIndex,
                  const std::vector<double>& normals, const std::vector<int>& normalIndex,
                  const std::vector<double>& texCoords, const std::vector<int>& texIndex,
                  bool reverseOrientation, bool closedSurface, bool normalPerVertex, bool convex,
                  const Texture* texture) {
  EXPECT_TRUE(normals.empty() && normalIndex.empty() && texCoords.empty() && texIndex.empty());
  EXPECT_FALSE(normalPerVertex || convex);
  EXPECT_EQ(texture, nullptr);
  note("face geometry " + setText(coords, coordIndex) + (reverseOrientation ? " reverse" : "") +
       (closedSurface ? " closed" : ""));
  return record.takesFaceGeometry;
}
bool faceSet(const std::vector<double>& coords, const std::vector<int>& indices,
             bool reverseOrientation, bool closedSurface) {
  if (record.throwsAtFaceSet) {
    throw std::runtime_error("full");
  }
  note("face set " + setText(coords, indices) + (reverseOrientation ? " reverse" : "") +
       (closedSurface ? " closed" : ""));
  return true;
}
bool lineSet(const std::vector<double>& coords, const std::vector<int>& indices) {
  note("line set " + setText(coords, indices));
  return true;
}
bool specialGeometry(KtGeometry* geometry, bool flag) {
  std::vector<double> sizes;
  EXPECT_TRUE(geometry->GetParameters(sizes));
  EXPECT_FALSE(flag);
  std::string text = "shape " + std::to_string(geometry->GetGraphicType());
  for (const double size : sizes) {
    text.append(" ").append(number(size));
  }
  note(text);
  return record.takesShapes;
}
bool label(KtGraphicNode* node, bool flag, int colorIndex) {
  std::u16string text;
  const bool hasText = node->GetLabelText(text);
  EXPECT_EQ(hasText, node->GetIsLabel());
  EXPECT_FALSE(flag);
  note("label " + (hasText ? std::string(text.begin(), text.end()) : "none") + " " +
       std::to_string(colorIndex));
  return true;
}
bool openFile(const std::u16string& path) {
  note("open file " + std::string(path.begin(), path.end()));
  return record.opensFile;
}
bool closeFile() {
  note("close file");
  return record.closesFile;
}

KtCallbacks allCallbacks() {
  KtCallbacks c;
  c.openNode = openNode;
  c.closeNode = closeNode;
  c.reuse = reuse;
  c.openLod = openLod;
  c.closeLod = closeLod;
  c.boundingBox = boundingBox;
  c.material = material;
  c.matrix = matrix;
  c.faceGeometry = faceGeometry;
  c.faceSet = faceSet;
  c.lineSet = lineSet;
  c.specialGeometry = specialGeometry;
  c.label = label;
  c.openFile = openFile;
  c.closeFile = closeFile;
  return c;
}

KtTraverser traverserWith(const KtCallbacks& c) {
  KtTraverser traverser;
  traverser.Init(c.openNode, c.closeNode, c.reuse, c.openLod, c.closeLod, c.boundingBox, c.material,
                 c.matrix, c.faceGeometry, c.faceSet, c.lineSet, c.pointSet, c.graphicNode,
                 c.specialGeometry, c.text, c.label, c.beginFile, c.endFile, c.openFile,
                 c.closeFile);
  return traverser;
}

using Calls = std::vector<std::string>;

// The calls of a walk over `nodes`, the text of a JSON list, without the file's own two.
Calls callsOf(const std::string& nodes, KtCallbacks callbacks) {
  callbacks.openFile = nullptr;
  callbacks.closeFile = nullptr;
  KtScene scene = ParseScene("{\"nodes\":" + nodes + "}", "test");
  EXPECT_TRUE(traverserWith(callbacks).Walk(scene, u"x"));
  return record.calls;
}

// The callbacks that tell nodes, shapes, sets and labels apart.
KtCallbacks plainCallbacks() {
  KtCallbacks c;
  c.openNode = openNode;
  c.closeNode = closeNode;
  c.openLod = openLod;
  c.closeLod = closeLod;
  c.faceSet = faceSet;
  c.lineSet = lineSet;
  return c;
}

class KtTraverserWalk : public testing::Test {
 protected:
  void SetUp() override { record = {}; }
};

}  // namespace

TEST(KtTraverser, InitKeepsTheCallbacksInSlotOrder) {
  const KtCallbacks callbacks = traverserWith(allCallbacks()).Callbacks();
  EXPECT_EQ(callbacks.openNode, openNode);
  EXPECT_EQ(callbacks.reuse, reuse);
  EXPECT_EQ(callbacks.material, material);
  EXPECT_EQ(callbacks.faceSet, faceSet);
  EXPECT_EQ(callbacks.pointSet, nullptr);
  EXPECT_EQ(callbacks.label, label);
  EXPECT_EQ(callbacks.beginFile, nullptr);
  EXPECT_EQ(callbacks.closeFile, closeFile);
}

TEST_F(KtTraverserWalk, VisitsANodeInItsFixedOrder) {
  const std::string nodes = R"([{
    "children": [{"graphicName": "child"}],
    "label": {"text": "T:x", "colorIndex": 4},
    "geometry": [{"lineSet": {"coords": [1, 2, 3], "indices": [0, -6]}},
                 {"faceSet": {"coords": [], "indices": [0, 1, 2, -7], "reverseOrientation": true,
                              "closedSurface": false}},
                 {"box": [1, 2, 3]}],
    "color": [1, 0.5, 0],
    "bounds": {"min": [0, 0, 0], "max": [2, 3, 6]},
    "matrix": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 42, 0, 0, 1],
    "graphicName": "a"}])";
  EXPECT_EQ(
      callsOf(nodes, allCallbacks()),
      (Calls{"reuse a", "open a", "matrix 42", "bounds 0,0,0 2,3,6 7", "material - 1,0.5,0 - - - -",
             "line set 3 2", "face geometry 0 4 reverse", "face set 0 4 reverse", "shape 1 1 2 3",
             "face geometry 24 30 closed", "face set 24 30 closed", "label T:x 4", "reuse child",
             "open child", "matrix 0", "label none 0", "close", "close"}));
}

TEST_F(KtTraverserWalk, GoesThroughChildrenInOrderAndInDepth) {
  const std::string nodes = R"([
    {"graphicName": "a", "children": [{"graphicName": "b", "children": [{"graphicName": "c"}]},
                                      {"graphicName": "d"}]},
    {"graphicName": "e"}])";
  EXPECT_EQ(callsOf(nodes, plainCallbacks()),
            (Calls{"open a", "open b", "open c", "close", "close", "open d", "close", "close",
                   "open e", "close"}));
}

TEST_F(KtTraverserWalk, LodGroupWalksItsFirstLevelOnly) {
  const std::string nodes = R"([{"lod": {"ranges": [10, 20],
    "levels": [{"graphicName": "near", "children": [{"graphicName": "x"}]},
               {"graphicName": "far"}]}}])";
  EXPECT_EQ(callsOf(nodes, allCallbacks()),
            (Calls{"lod 2 0", "reuse near", "open near", "matrix 0", "label none 0", "reuse x",
                   "open x", "matrix 0", "label none 0", "close", "close", "close lod"}));
}

TEST_F(KtTraverserWalk, LodGroupWithoutLevelsIsOpenedAndClosed) {
  EXPECT_EQ(callsOf(R"([{"lod": {"levels": []}}, {"graphicName": "a"}])", plainCallbacks()),
            (Calls{"lod 0 0", "close lod", "open a", "close"}));
}

TEST_F(KtTraverserWalk, LodGroupsNest) {
  EXPECT_EQ(callsOf(R"([{"lod": {"levels": [{"lod": {"levels": [{"graphicName": "a"}]}}]}}])",
                    plainCallbacks()),
            (Calls{"lod 0 0", "lod 0 0", "open a", "close", "close lod", "close lod"}));
}

TEST_F(KtTraverserWalk, LodGroupReplacesTheNodesOtherContent) {
  KtSceneNode node;
  node.lod = std::make_unique<KtSceneNode::Lod>();
  node.children.emplace_back();
  node.geometry.emplace_back(KtBox{});
  traverserWith(allCallbacks()).WalkNode(node);
  EXPECT_EQ(record.calls, (Calls{"lod 0 0", "close lod"}));
}

TEST_F(KtTraverserWalk, ReusedNodeIsClosedAndItsContentSkipped) {
  record.reuses = true;
  EXPECT_EQ(callsOf(R"([{"graphicName": "a", "geometry": [{"box": [1, 1, 1]}],
                         "children": [{"graphicName": "b"}]}])",
                    allCallbacks()),
            (Calls{"reuse a", "close"}));
}

TEST_F(KtTraverserWalk, TakenShapeIsNotSentAsAFaceSet) {
  record.takesShapes = true;
  KtCallbacks callbacks = plainCallbacks();
  callbacks.specialGeometry = specialGeometry;
  EXPECT_EQ(callsOf(R"([{"geometry": [{"cylinder": [2, 5]}, {"box": [1, 2, 3]}]}])", callbacks),
            (Calls{"open ", "shape 2 2 5", "shape 1 1 2 3", "close"}));
}

TEST_F(KtTraverserWalk, ShapesAreSentAsFaceSetsWithoutAShapeCallback) {
  EXPECT_EQ(
      callsOf(R"([{"geometry": [{"cylinder": [2, 5]}, {"box": [1, 2, 3]}]}])", plainCallbacks()),
      (Calls{"open ", "face set 192 226 closed", "face set 24 30 closed", "close"}));
}

TEST_F(KtTraverserWalk, TakenFaceGeometryIsNotSentAsAFaceSet) {
  record.takesFaceGeometry = true;
  KtCallbacks callbacks = plainCallbacks();
  callbacks.faceGeometry = faceGeometry;
  EXPECT_EQ(callsOf(R"([{"geometry": [{"faceSet": {"coords": [1], "indices": []}}]}])", callbacks),
            (Calls{"open ", "face geometry 1 0 closed", "close"}));
}

TEST_F(KtTraverserWalk, WithoutCallbacksNothingHappens) {
  EXPECT_EQ(callsOf(R"([{"graphicName": "a", "color": [1, 1, 1], "label": {"text": ""},
                         "bounds": {"min": [0, 0, 0], "max": [1, 1, 1]},
                         "geometry": [{"box": [1, 1, 1]}, {"cylinder": [1, 1]},
                                      {"faceSet": {"coords": [], "indices": []}},
                                      {"lineSet": {"coords": [], "indices": []}}],
                         "children": [{"lod": {"levels": [{}]}}]}])",
                    {}),
            Calls{});
}

TEST_F(KtTraverserWalk, OwnMaterialIsPassedWhole) {
  KtSceneNode node;
  node.material = std::make_unique<KtMaterial>();
  node.material->diffuse[0] = 0.5;
  node.material->shininess = 0.25;
  KtCallbacks callbacks;
  callbacks.material = material;
  traverserWith(callbacks).WalkNode(node);
  EXPECT_EQ(record.calls, Calls{"material 0,0,0 0.5,1,1 0,0,0 0,0,0 0.25 0"});
}

TEST_F(KtTraverserWalk, OwnColorReplacesTheMaterialsDiffuseOne) {
  KtSceneNode node;
  node.material = std::make_unique<KtMaterial>();
  node.color = {1, 0, 0};
  KtCallbacks callbacks;
  callbacks.material = material;
  traverserWith(callbacks).WalkNode(node);
  EXPECT_EQ(record.calls, Calls{"material 0,0,0 1,0,0 0,0,0 0,0,0 0 0"});
}

TEST_F(KtTraverserWalk, RunsBetweenTheFilesCallbacks) {
  KtScene scene = ParseScene(R"({"nodes": [{"graphicName": "a"}]})", "test");
  KtCallbacks callbacks = plainCallbacks();
  callbacks.openFile = openFile;
  callbacks.closeFile = closeFile;
  EXPECT_TRUE(traverserWith(callbacks).Walk(scene, u"plan.dxf"));
  EXPECT_EQ(record.calls, (Calls{"open file plan.dxf", "open a", "close", "close file"}));
}

TEST_F(KtTraverserWalk, FileThatDoesNotOpenEndsTheWalk) {
  record.opensFile = false;
  KtScene scene = ParseScene(R"({"nodes": [{}]})", "test");
  EXPECT_FALSE(traverserWith(allCallbacks()).Walk(scene, u"plan.dxf"));
  EXPECT_EQ(record.calls, Calls{"open file plan.dxf"});
}

TEST_F(KtTraverserWalk, ReturnsWhatTheClosingCallbackReturns) {
  record.closesFile = false;
  KtScene scene;
  EXPECT_FALSE(traverserWith(allCallbacks()).Walk(scene, u"plan.dxf"));
  EXPECT_EQ(record.calls, (Calls{"open file plan.dxf", "close file"}));
}

TEST_F(KtTraverserWalk, ExceptionOfACallbackComesThroughWithNoFurtherCall) {
  record.throwsAtFaceSet = true;
  KtScene scene =
      ParseScene(R"({"nodes": [{"graphicName": "a", "geometry": [{"box": [1, 1, 1]}]}]})", "test");
  KtCallbacks callbacks = plainCallbacks();
  callbacks.closeFile = closeFile;
  EXPECT_THROW(traverserWith(callbacks).Walk(scene, u"x"), std::runtime_error);
  EXPECT_EQ(record.calls, Calls{"open a"});
}
