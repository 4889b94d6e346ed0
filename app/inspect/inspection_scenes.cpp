#include "app/inspect/inspection_scenes.h"

#include <iterator>
#include <limits>
#include <utility>

#include "ktscene/kt_run_code.h"

namespace dxf2d {

namespace {

KtSceneNode object(const char16_t* graphicName, const char16_t* id) {
  KtSceneNode node;
  node.graphicName = graphicName;
  node.objectId = node.realObjectId = id;
  return node;
}

KtSceneNode crate(const char16_t* id, double x) {
  KtSceneNode node = object(u"crate", id);
  node.matrix.SetTranslation(x, 0.0, 0.0);
  node.geometry.emplace_back(KtBox{2.0, 1.0, 0.5});
  return node;
}

KtScene sceneOf(KtSceneNode node) {
  KtScene scene;
  scene.nodes.push_back(std::move(node));
  return scene;
}

KtScene makeEmpty() { return {}; }

KtScene makeNodes() {
  KtScene scene = sceneOf(KtSceneNode());
  KtSceneNode group = object(u"", u"group");
  group.hasGraphicItem = false;
  group.children.push_back(object(u"part", u"part-1"));
  group.children.push_back(KtSceneNode());
  scene.nodes.push_back(std::move(group));
  return scene;
}

// The second crate may be drawn as an instance, the third is tilted and the fourth has a color.
KtScene makeReuse() {
  constexpr double kQuarterTurn = 1.5707963267948966;
  KtScene scene;
  scene.nodes.push_back(crate(u"1", 0.0));
  scene.nodes.push_back(crate(u"2", 5.0));
  scene.nodes.push_back(crate(u"3", 10.0));
  scene.nodes.back().matrix.Rotate(1.0, 0.0, 0.0, kQuarterTurn);
  scene.nodes.push_back(crate(u"4", 15.0));
  scene.nodes.back().color = {0.0, 0.5, 1.0};
  return scene;
}

KtScene makeLevelsOfDetail() {
  KtSceneNode group;
  group.lod = std::make_unique<KtSceneNode::Lod>();
  group.lod->ranges = {10.0, 100.0};
  group.lod->levels.push_back(crate(u"near", 0.0));
  group.lod->levels.push_back(crate(u"far", 0.0));
  return sceneOf(std::move(group));
}

KtScene makeBounds() {
  KtSceneNode node = crate(u"bounded", 0.0);
  node.bounds = std::make_unique<KtBounds>(KtBounds{{-1.0, -0.5, 0.0}, {1.0, 0.5, 0.5}});
  return sceneOf(std::move(node));
}

KtScene makeMaterials() {
  KtScene scene;
  scene.nodes.push_back(crate(u"colored", 0.0));
  scene.nodes.back().color = {1.0, 0.0, 0.0};
  scene.nodes.push_back(crate(u"of a material", 3.0));
  scene.nodes.back().material = std::make_unique<KtMaterial>();
  scene.nodes.push_back(crate(u"both", 6.0));
  scene.nodes.back().color = {0.0, 1.0, 0.0};
  scene.nodes.back().material = std::make_unique<KtMaterial>();
  return scene;
}

const std::vector<double> kCorners{0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0, 1, 1, 3};
// One run of every code, and one of a code without meaning.
constexpr int kUnknownCode = KtRunCode::kPolygon - 2;
// clang-format off
const std::vector<int> kRuns{
    0, 1, 2, 3, KtRunCode::kPolygon,
    0, 1, 2, KtRunCode::kLineStrip,
    0, 1, 4, 1, 2, 4, KtRunCode::kTriangles,
    4, 0, 1, 2, KtRunCode::kTriangleFan,
    0, 1, 3, 2, KtRunCode::kTriangleStrip,
    0, 1, KtRunCode::kIgnored,
    0, 2, KtRunCode::kSegment,
    0, 1, kUnknownCode};
// clang-format on

KtScene makeFaceSets() {
  KtSceneNode node = object(u"faces", u"faces");
  node.geometry.emplace_back(std::make_shared<KtFaceSet>(KtFaceSet{kCorners, kRuns}));
  node.geometry.emplace_back(std::make_shared<KtFaceSet>(KtFaceSet{kCorners, kRuns, true, false}));
  node.geometry.emplace_back(std::make_shared<KtFaceSet>());
  return sceneOf(std::move(node));
}

KtScene makeLineSets() {
  KtSceneNode node = object(u"lines", u"lines");
  node.geometry.emplace_back(std::make_shared<KtLineSet>(KtLineSet{kCorners, kRuns}));
  node.geometry.emplace_back(std::make_shared<KtLineSet>());
  return sceneOf(std::move(node));
}

// Entries that name no point, points that are not finite, runs without an end.
KtScene makeFaultyGeometry() {
  const double infinite = std::numeric_limits<double>::infinity();
  const double noNumber = std::numeric_limits<double>::quiet_NaN();
  const int largest = std::numeric_limits<int>::max();
  const int least = std::numeric_limits<int>::min();
  const std::vector<double> coords{0, 0, 0, 2, 0, 0, infinite, 2, 0, 0, noNumber, 0, 7};
  // clang-format off
  const std::vector<int> indices{
      0, 1, 99, KtRunCode::kPolygon, least,
      0, 1, KtRunCode::kTriangles,
      0, 1, largest, KtRunCode::kTriangleFan,
      KtRunCode::kPolygon, KtRunCode::kPolygon, KtRunCode::kLineStrip, KtRunCode::kSegment,
      0, 2, KtRunCode::kLineStrip,
      1, 3, KtRunCode::kSegment,
      0, 1};
  // clang-format on
  KtSceneNode node = object(u"faulty", u"faulty");
  node.geometry.emplace_back(std::make_shared<KtFaceSet>(KtFaceSet{coords, indices}));
  node.geometry.emplace_back(std::make_shared<KtLineSet>(KtLineSet{coords, indices}));
  return sceneOf(std::move(node));
}

KtScene makeBox() { return sceneOf(crate(u"box", 0.0)); }

KtScene makeCylinder() {
  KtSceneNode node = object(u"column", u"column");
  node.geometry.emplace_back(KtCylinder{0.5, 3.0});
  return sceneOf(std::move(node));
}

KtSceneNode labeled(const char16_t* id, const char16_t* text, int colorIndex) {
  KtSceneNode node = object(u"", id);
  node.label = std::make_unique<KtLabel>(KtLabel{text, colorIndex});
  return node;
}

// One that is well formed, one with letters of many kinds, one that cannot be read, an empty one.
KtScene makeLabels() {
  KtScene scene;
  scene.nodes.push_back(
      labeled(u"1", u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"first\" \"second line\"", 3));
  scene.nodes.push_back(
      labeled(u"2", u"T:1 1 0 0 0 0 0 L 0 0 0 1 0 \"\u00DC\u20AC\u4E2D\U0001F600\"", 0));
  scene.nodes.push_back(labeled(u"3", u"T:one two three", 256));
  scene.nodes.push_back(labeled(u"4", u"", -1));
  return scene;
}

// Deeper than any stack.
KtScene makeDeepNesting() {
  constexpr int kDepth = 100'000;
  KtSceneNode node = crate(u"innermost", 0.0);
  for (int i = 0; i < kDepth; ++i) {
    KtSceneNode outer;
    outer.children.push_back(std::move(node));
    node = std::move(outer);
  }
  return sceneOf(std::move(node));
}

KtScene makeEverything();

constexpr InspectionScene kScenes[] = {
    {marked("empty scene"), makeEmpty},
    {marked("nodes"), makeNodes},
    {marked("reuse"), makeReuse},
    {marked("levels of detail"), makeLevelsOfDetail},
    {marked("bounds"), makeBounds},
    {marked("colors and materials"), makeMaterials},
    {marked("face sets"), makeFaceSets},
    {marked("line sets"), makeLineSets},
    {marked("faulty geometry"), makeFaultyGeometry},
    {marked("boxes"), makeBox},
    {marked("cylinders"), makeCylinder},
    {marked("labels"), makeLabels},
    {kDeepNesting, makeDeepNesting},
    {kEverything, makeEverything},
};

KtScene makeEverything() {
  KtScene all;
  for (const InspectionScene& kind : std::span(kScenes).first(std::size(kScenes) - 1)) {
    KtScene scene = kind.make();
    std::move(scene.nodes.begin(), scene.nodes.end(), std::back_inserter(all.nodes));
  }
  return all;
}

}  // namespace

std::span<const InspectionScene> inspectionScenes() { return kScenes; }

}  // namespace dxf2d
