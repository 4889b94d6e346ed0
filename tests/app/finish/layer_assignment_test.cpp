#include "app/finish/layer_assignment.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "app/drawing/dxf_reader.h"
#include "app/finish/finishing.h"
#include "app/release/release_writer.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d::finish {
namespace {

// Two walls on two floors and a label, in a house.
Drawing house() {
  return parseDrawing(
      drawingText(blockText("GO_1", polylineText(3, true, "0,0 4,0 4,3")) +
                      blockText("GO_2", polylineText(5, true, "0,0 9,0 9,3") +
                                            polylineText(5, false, "0,0 1,1") +
                                            polylineText(6, false, "0,0 2,1")) +
                      blockText("GO_3", labelText("Wall", 1, 0, 0, 1)) +
                      blockText("GO_4", insertText("GO_1", 0, 0) + insertText("GO_2", 0, 0)),
                  insertText("GO_4", 0, 0) + insertText("GO_3", 0, 0)),
      "plan.dxf");
}

SideTable houseSources() {
  const SourceName ground{"Ground", 11};
  SideTable table;
  table.blocks = {
      {"GO_1", {{"Wall", 1}, ground, {"Brick", 0x11AA22, PartKind::kBorder}}},
      {"GO_2", {{"Wall", 2}, {"ground", 12}, {"B:rick", kNoTrueColor, PartKind::kHidden}}},
      {"GO_3", {{"Label", 3}, ground, {"", kNoTrueColor, PartKind::kLabel}}}};
  table.inserts = {{"GO_7", {"Shed", 4}, {}}, {"GO_3", {"Label", 3}, ground}};
  return table;
}

Drawing finished(LayerScheme scheme, Release release = Release::kR2004) {
  Options options;
  options.layers = scheme;
  options.release = release;
  return finishDrawing(house(), houseSources(), options).drawing;
}

std::vector<std::string> layerNames(const Drawing& drawing) {
  std::vector<std::string> names;
  for (const Layer& layer : drawing.layers) {
    names.push_back(layer.name);
  }
  return names;
}

const PolylineEntity& polylineOf(const Drawing& drawing, const std::string& block,
                                 std::size_t place = 0) {
  return std::get<PolylineEntity>(
      drawing.blocks[drawing.blockNumbers.at(block)].entities.at(place));
}

using Names = std::vector<std::string>;

TEST(AssignLayers, NoneLeavesEverythingOnItsLayer) {
  const Drawing drawing = finished(LayerScheme::kNone);
  EXPECT_EQ(layerNames(drawing), Names{"0"});
  EXPECT_EQ(polylineOf(drawing, "GO_1").layer, 0U);
}

TEST(AssignLayers, ObjectsHaveLayersOfTheirNames) {
  const Drawing drawing = finished(LayerScheme::kObject);
  EXPECT_EQ(layerNames(drawing), (Names{"0", "Label", "Wall", "Wall_2"}));
  EXPECT_EQ(polylineOf(drawing, "GO_2").layer, 3U);
}

TEST(AssignLayers, NamesThatDifferInCaseAloneAreNumbered) {
  EXPECT_EQ(layerNames(finished(LayerScheme::kGroup)), (Names{"0", "Ground", "ground_2"}));
}

TEST(AssignLayers, WhatHasNoMaterialStaysOnItsLayer) {
  EXPECT_EQ(layerNames(finished(LayerScheme::kMaterial)), (Names{"0", "Brick", "B_rick"}));
}

TEST(AssignLayers, KindsHaveLineTypesAndWeights) {
  const Drawing drawing = finished(LayerScheme::kKind);
  ASSERT_EQ(layerNames(drawing), (Names{"0", "border", "hidden", "label"}));
  EXPECT_EQ(drawing.layers[1].lineType, LineType::kContinuous);
  EXPECT_EQ(drawing.layers[1].lineWeight, 25);
  EXPECT_EQ(drawing.layers[2].lineType, LineType::kDashed);
  EXPECT_EQ(drawing.layers[2].lineWeight, 18);
  EXPECT_EQ(polylineOf(drawing, "GO_2").lineType, LineType::kByLayer);
}

TEST(AssignLayers, HiddenLinesAreDashedOnAnyLayer) {
  const Drawing drawing = finished(LayerScheme::kObject);
  EXPECT_EQ(polylineOf(drawing, "GO_2").lineType, LineType::kDashed);
  EXPECT_EQ(polylineOf(drawing, "GO_1").lineType, LineType::kByLayer);
}

TEST(AssignLayers, AnInsertIsOnTheLayerOfItsBlock) {
  const Drawing drawing = finished(LayerScheme::kObject);
  EXPECT_EQ(std::get<InsertEntity>(drawing.entities.at(1)).layer, 1U);
  EXPECT_EQ(std::get<InsertEntity>(drawing.entities.at(0)).layer, 0U);
}

TEST(AgreeWithLayers, ALayerHasTheColorOfMostOfItsEntities) {
  const Drawing drawing = finished(LayerScheme::kObject);
  EXPECT_EQ(drawing.layers[3].color, 5);
  EXPECT_EQ(polylineOf(drawing, "GO_2", 0).color, kColorByLayer);
  EXPECT_EQ(polylineOf(drawing, "GO_2", 1).color, 6);
}

TEST(AgreeWithLayers, TrueColorsAreTheLayersToo) {
  const Drawing drawing = finished(LayerScheme::kObject);
  EXPECT_EQ(drawing.layers[2].trueColor, 0x11AA22);
  EXPECT_EQ(polylineOf(drawing, "GO_1").trueColor, kNoTrueColor);
  EXPECT_EQ(finished(LayerScheme::kObject, Release::kR2000).layers[2].trueColor, kNoTrueColor);
}

// A chair in two rooms.
std::string chairs() {
  return drawingText(blockText("GO_1", polylineText(3, true, "0,0 4,0 4,3")) +
                         blockText("GO_2", insertText("GO_1", 0, 0)),
                     insertText("GO_2", 0, 0) + insertText("GO_2", 9, 0));
}

SideTable chairSources() {
  const SourceName hall{"Hall", 11};
  SideTable table;
  table.blocks = {{"GO_1", {{"Chair", 1}, hall, {}}}};
  table.inserts = {{"GO_2", {"Chair", 1}, hall}, {"GO_2", {"Chair", 2}, {"Kitchen", 12}}};
  return table;
}

Drawing finishedChairs(LayerScheme scheme) {
  Options options;
  options.layers = scheme;
  return finishDrawing(parseDrawing(chairs(), "plan.dxf"), chairSources(), options).drawing;
}

TEST(AssignLayers, WhatObjectsShareIsOnTheLayersOfTheirInserts) {
  for (const LayerScheme scheme : {LayerScheme::kObject, LayerScheme::kGroup}) {
    const Drawing drawing = finishedChairs(scheme);
    EXPECT_EQ(drawing.layers.size(), 3U);
    EXPECT_EQ(std::get<InsertEntity>(drawing.entities.at(0)).layer, 1U);
    EXPECT_EQ(std::get<InsertEntity>(drawing.entities.at(1)).layer, 2U);
    EXPECT_EQ(polylineOf(drawing, "GO_1").layer, 0U);
  }
}

TEST(AgreeWithLayers, WhatObjectsShareIsByLayerWhereAllItsLayersHaveItsColor) {
  const Drawing drawing = finishedChairs(LayerScheme::kObject);
  EXPECT_EQ(drawing.layers[1].color, 3);
  EXPECT_EQ(drawing.layers[2].color, 3);
  EXPECT_EQ(polylineOf(drawing, "GO_1").color, kColorByLayer);
}

TEST(AgreeWithLayers, WhatShowsInTheColorsOfSeveralLayersKeepsThem) {
  Drawing drawing = finishedChairs(LayerScheme::kObject);
  drawing.layers[2].color = 5;
  drawing.entities.push_back(PolylineEntity{{.color = 6, .layer = 2}, false, {{0, 0}, {1, 1}}});
  drawing.entities.push_back(PolylineEntity{{.color = 6, .layer = 2}, false, {{5, 0}, {7, 1}}});
  const Drawing again = finishDrawing(drawing, {}, {}).drawing;
  EXPECT_EQ(again.layers[2].color, 5);
  EXPECT_EQ(polylineOf(again, "GO_1").color, kColorByLayer);
}

TEST(AgreeWithLayers, WhatIsJoinedCountsOnce) {
  Drawing drawing;
  drawing.layers.push_back({.name = "wall"});
  drawing.layerNumbers.emplace("wall", 1);
  const auto add = [&](int color, double from, double to) {
    drawing.entities.push_back(
        PolylineEntity{{.color = color, .layer = 1}, false, {{from, 0}, {to, 0}}});
  };
  add(5, 0, 1);
  add(5, 1, 2);
  add(5, 2, 3);
  add(6, 10, 11);
  add(6, 20, 21);
  const Drawing once = finishDrawing(drawing, {}, {}).drawing;
  EXPECT_EQ(once.layers[1].color, 6);
  EXPECT_EQ(finishDrawing(once, {}, {}).drawing.layers[1].color, 6);
}

TEST(AssignLayers, FinishedAgainIsTheSameInEveryScheme) {
  for (const LayerScheme scheme :
       {LayerScheme::kObject, LayerScheme::kGroup, LayerScheme::kMaterial, LayerScheme::kKind}) {
    for (const Release release : {Release::kR2000, Release::kR2004}) {
      const auto write = [](const Drawing& drawing) {
        std::string text;
        release::writeDrawing(drawing, [&](std::string_view bytes) { text += bytes; });
        return text;
      };
      Options options;
      options.release = release;
      const std::string once = write(finished(scheme, release));
      EXPECT_EQ(write(finishDrawing(parseDrawing(once, "plan.dxf"), {}, options).drawing), once);
    }
  }
}

}  // namespace
}  // namespace dxf2d::finish
