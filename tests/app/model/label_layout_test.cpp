#include "app/model/label_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "ktscene/kt_run_code.h"

namespace dxf2d {
namespace {

PlanExtent extentOf(double minX, double minY, double maxX, double maxY) {
  PlanExtent extent;
  extent.Add(minX, minY);
  extent.Add(maxX, maxY);
  return extent;
}

bool overlap(const LabelPlace& a, double widthA, const LabelPlace& b, double widthB) {
  const auto size = [](const LabelPlace& place, double width) {
    const double length = width * place.height;
    return place.isUpright ? std::array{place.height, length} : std::array{length, place.height};
  };
  const auto sizeA = size(a, widthA);
  const auto sizeB = size(b, widthB);
  return std::abs(a.center[0] - b.center[0]) < (sizeA[0] + sizeB[0]) / 2 &&
         std::abs(a.center[1] - b.center[1]) < (sizeA[1] + sizeB[1]) / 2;
}

// A raster of horizontal lines from x = 0 to 10, within 10 by 10.
LineRaster linesAt(const std::vector<double>& heights) {
  auto lines = std::make_shared<KtLineSet>();
  for (const double y : heights) {
    const auto first = static_cast<int>(lines->coords.size() / 3);
    lines->coords.insert(lines->coords.end(), {0.0, y, 0.0, 10.0, y, 0.0});
    lines->indices.insert(lines->indices.end(), {first, first + 1, KtRunCode::kSegment});
  }
  KtScene scene;
  KtSceneNode& node = scene.nodes.emplace_back();
  node.children.emplace_back().geometry.emplace_back(std::shared_ptr<const KtLineSet>(lines));
  return {scene, extentOf(0, 0, 10, 10), 0.1};
}

TEST(LabelWidth, IsThatOfWhatReadersShow) {
  EXPECT_DOUBLE_EQ(labelWidth(u"oak"), 3 * 0.8);
  EXPECT_DOUBLE_EQ(labelWidth(u"\\U+0421\\U+0442\\U+0443\\U+043B"), 4 * 0.8);
  EXPECT_DOUBLE_EQ(labelWidth(u"\\U+D83D\\U+DE00"), 0.8);
}

TEST(PlaceLabels, StandOffTheLinesOfTheirObject) {
  const auto places = placeLabels({{extentOf(0, 0, 10, 10), 3.0}}, 1.0, linesAt({5.0, 6.2}));
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_EQ(places[0].height, 1.0);
  EXPECT_LT(places[0].center[1], 4.5);
  EXPECT_EQ(places[0].center[0], 5.0);
}

TEST(PlaceLabels, AreSmallerBetweenLinesThatLeaveLittleRoom) {
  const auto places = placeLabels({{extentOf(0, 4, 10, 6), 3.0}}, 1.0, linesAt({4.0, 5.0, 6.0}));
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_EQ(places[0].height, 0.75);
}

TEST(PlaceLabels, StandBesideAnObjectThatIsFullOfLines) {
  const auto places =
      placeLabels({{extentOf(4, 4, 6, 5), 3.0}}, 1.0, linesAt({4.0, 4.2, 4.4, 4.6, 4.8, 5.0}));
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_EQ(places[0].height, 1.0);
  EXPECT_EQ(places[0].center, (std::array<double, 2>{5.0, 5.75}));
}

TEST(PlaceLabels, StandBesideNoOtherObject) {
  const std::vector<LabelRequest> requests = {{extentOf(4, 4, 6, 5), 3.0},
                                              {extentOf(4, 5, 6, 7), 1.0}};
  const auto places = placeLabels(requests, 1.0, linesAt({4.0, 4.2, 4.4, 4.6, 4.8, 5.0}));
  EXPECT_EQ(places.at(0).center, (std::array<double, 2>{5.0, 3.25}));
}

TEST(PlaceLabels, StandBesideAWindowWithinItsWall) {
  const std::vector<LabelRequest> requests = {
      {extentOf(0, 4, 10, 12), 1.0}, {extentOf(4, 4, 6, 5), 3.0}, {extentOf(0, 0, 10, 4), 1.0}};
  const auto places = placeLabels(requests, 1.0, linesAt({4.0, 4.2, 4.4, 4.6, 4.8, 5.0}));
  EXPECT_EQ(places.at(1).center, (std::array<double, 2>{5.0, 5.75}));
}

TEST(PlaceLabels, CrossTheFewestLinesWhereTheyHaveTo) {
  std::vector<double> heights;
  for (int i = 0; i <= 40; ++i) {
    // Twice as dense in the lower half.
    heights.push_back(i <= 20 ? 0.25 * i : 5.0 + 0.4 * (i - 20));
  }
  const auto places = placeLabels({{extentOf(0, 0, 10, 10), 3.0}}, 1.0, linesAt(heights));
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_EQ(places[0].height, 1.0);
  EXPECT_GT(places[0].center[1], 5.0);
}

TEST(LineRaster, CountsTheCellsOfABoxThatHaveALine) {
  const LineRaster raster = linesAt({5.05});
  EXPECT_EQ(raster.CountIn(extentOf(2.05, 4.0, 3.05, 6.0)), 11U);
  EXPECT_EQ(raster.CountIn(extentOf(0.0, 0.0, 10.0, 4.95)), 0U);
  EXPECT_EQ(raster.CountIn(extentOf(-5.0, 5.0, 20.0, 5.01)), 101U);
  EXPECT_EQ(LineRaster().CountIn(extentOf(0.0, 0.0, 1.0, 1.0)), 0U);
}

TEST(LineRaster, HoldsBoxesWithinItsExtent) {
  const LineRaster raster = linesAt({5.0});
  EXPECT_TRUE(raster.Holds(extentOf(0.0, 0.0, 10.0, 10.0)));
  EXPECT_FALSE(raster.Holds(extentOf(-0.1, 0.0, 1.0, 1.0)));
  EXPECT_FALSE(raster.Holds(extentOf(0.0, 9.0, 1.0, 10.5)));
}

TEST(LineRaster, ShowsTheOutlineOfAFaceSetWhereItsNodePlacesIt) {
  auto faces = std::make_shared<KtFaceSet>();
  faces->coords = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  faces->indices = {0, 1, 2, KtRunCode::kPolygon, 0, 2, 3, KtRunCode::kPolygon};
  KtScene scene;
  KtSceneNode& node = scene.nodes.emplace_back();
  node.matrix.SetTranslation(3.0, 4.0, 0.0);
  node.children.emplace_back().geometry.emplace_back(std::shared_ptr<const KtFaceSet>(faces));
  const LineRaster raster(scene, extentOf(0, 0, 10, 10), 0.1);
  EXPECT_GT(raster.CountIn(extentOf(3.5, 3.9, 3.6, 4.1)), 0U);
  EXPECT_EQ(raster.CountIn(extentOf(3.2, 4.2, 3.8, 4.8)), 0U);
}

TEST(PlaceLabels, ALoneLabelStandsInTheMiddle) {
  const auto places = placeLabels({{extentOf(0, 0, 10, 4), 3.0}}, 1.0);
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_EQ(places[0].center, (std::array<double, 2>{5.0, 2.0}));
  EXPECT_EQ(places[0].height, 1.0);
  EXPECT_FALSE(places[0].isUpright);
}

TEST(PlaceLabels, TheFirstOfOnePlaceKeepsTheMiddleAndTheOtherMovesWithinItsExtent) {
  const std::vector<LabelRequest> requests(2, {extentOf(0, 0, 10, 10), 3.0});
  const auto places = placeLabels(requests, 1.0);
  EXPECT_EQ(places.at(0).center, (std::array<double, 2>{5.0, 5.0}));
  ASSERT_TRUE(places.at(1).isPlaced);
  EXPECT_FALSE(overlap(places[0], 3.0, places[1], 3.0));
  EXPECT_EQ(places[1].height, 1.0);
  EXPECT_GE(places[1].center[0] - 1.5, 0.0);
  EXPECT_LE(places[1].center[0] + 1.5, 10.0);
}

TEST(PlaceLabels, TheLargerObjectLeavesTheMiddleToASmallerOne) {
  const auto places =
      placeLabels({{extentOf(0, 0, 10, 10), 3.0}, {extentOf(-15, -15, 25, 25), 3.0}}, 1.0);
  EXPECT_EQ(places.at(0).center, (std::array<double, 2>{5.0, 5.0}));
  ASSERT_TRUE(places.at(1).isPlaced);
  EXPECT_FALSE(overlap(places[1], 3.0, {true, {5.0, 5.0}, 10.0, false}, 1.0));
}

TEST(PlaceLabels, LabelsOfWallsStandBesideTheirWindows) {
  const auto places =
      placeLabels({{extentOf(0, 0, 40, 2), 6.0}, {extentOf(15, 0.5, 25, 1.5), 4.0}}, 1.0);
  ASSERT_TRUE(places.at(0).isPlaced);
  EXPECT_TRUE(places[0].center[0] + 3.0 <= 15.0 || places[0].center[0] - 3.0 >= 25.0);
  EXPECT_EQ(places.at(1).center, (std::array<double, 2>{20.0, 1.0}));
}

TEST(PlaceLabels, WhatFindsNoRoomIsSmallerOrLeftOut) {
  // All want the same small place.
  const std::vector<LabelRequest> requests(9, {extentOf(0, 0, 6, 2), 2.0});
  const auto places = placeLabels(requests, 1.0);
  std::size_t placed = 0;
  bool anySmaller = false;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!places[i].isPlaced) {
      continue;
    }
    ++placed;
    anySmaller = anySmaller || places[i].height < 1.0;
    for (std::size_t k = 0; k < i; ++k) {
      EXPECT_FALSE(places[k].isPlaced && overlap(places[i], 2.0, places[k], 2.0));
    }
  }
  EXPECT_GE(placed, 1u);
  EXPECT_LT(placed, places.size());
  EXPECT_TRUE(anySmaller);
}

TEST(PlaceLabels, TextsRunUpAlongNarrowObjects) {
  const auto places = placeLabels({{extentOf(0, 0, 0.5, 20), 6.0}}, 1.0);
  EXPECT_TRUE(places.at(0).isUpright);
}

TEST(PlaceLabels, NoTwoOfAThousandOverlap) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> at(0.0, 60.0);
  std::uniform_real_distribution<double> size(0.1, 12.0);
  std::vector<LabelRequest> requests;
  for (int i = 0; i < 1000; ++i) {
    const double x = at(random);
    const double y = at(random);
    requests.push_back({extentOf(x, y, x + size(random), y + size(random)), size(random)});
  }
  const auto places = placeLabels(requests, 1.0);
  for (std::size_t i = 0; i < places.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      EXPECT_FALSE(places[i].isPlaced && places[k].isPlaced &&
                   overlap(places[i], requests[i].width, places[k], requests[k].width));
    }
  }
}

TEST(PlaceLabels, EnormousPlansAreLaidOut) {
  const auto places = placeLabels(
      {{extentOf(-1e300, 0, 1e300, 1e300), 5.0}, {extentOf(1e299, 0, 1e300, 1e300), 5.0}}, 1e-6);
  EXPECT_TRUE(places.at(0).isPlaced);
}

}  // namespace
}  // namespace dxf2d
