#include "app/model/sheet_layout.h"

#include <gtest/gtest.h>

namespace dxf2d {
namespace {

using Shift = std::array<double, 2>;

// The views of a body 4 wide, 2 deep and 3 high with its lowest left corner at the origin.
PlanExtent extentOf(const std::string& view) {
  if (view == "top") {
    return {0, 0, 4, 2};
  }
  if (view == "bottom") {
    return {0, -2, 4, 0};
  }
  if (view == "right") {
    return {0, 0, 2, 3};
  }
  if (view == "left") {
    return {-2, 0, 0, 3};
  }
  if (view == "back") {
    return {-4, 0, 0, 3};
  }
  return view == "iso" ? PlanExtent{-1, -1, 4, 3} : PlanExtent{0, 0, 4, 3};
}

std::vector<std::optional<Shift>> placed(const std::vector<std::string>& views,
                                         ProjectionAngle projection) {
  std::vector<PlanExtent> extents;
  for (const std::string& view : views) {
    extents.push_back(extentOf(view));
  }
  return placeViews(views, extents, projection, 1.0);
}

TEST(ParseSheetViews, TakesNamesInAnyLetterCase) {
  EXPECT_EQ(parseSheetViews("front, TOP,iso"), (std::vector<std::string>{"front", "top", "iso"}));
}

TEST(ParseSheetViews, RefusesWhatIsNoViewOrGivenTwice) {
  for (const char* text : {"", ",", "front,", "front,front", "front top", "30,45", "side"}) {
    EXPECT_EQ(parseSheetViews(text), std::nullopt) << text;
  }
}

TEST(PlaceViews, ThirdAngleHasTheTopAboveAndTheRightOnTheRight) {
  const auto shifts = placed({"front", "top", "right"}, ProjectionAngle::kThird);
  EXPECT_EQ(shifts[0], (Shift{0, 0}));
  EXPECT_EQ(shifts[1], (Shift{0, 4}));
  EXPECT_EQ(shifts[2], (Shift{5, 0}));
}

TEST(PlaceViews, FirstAngleHasTheTopBelowAndTheRightOnTheLeft) {
  const auto shifts = placed({"front", "top", "right"}, ProjectionAngle::kFirst);
  EXPECT_EQ(shifts[0], (Shift{0, 0}));
  EXPECT_EQ(shifts[1], (Shift{0, -3}));
  EXPECT_EQ(shifts[2], (Shift{-3, 0}));
}

TEST(PlaceViews, AllSixViewsAndIsoStandApart) {
  const std::vector<std::string> views{"front", "top", "bottom", "left", "right", "back", "iso"};
  for (const ProjectionAngle projection : {ProjectionAngle::kFirst, ProjectionAngle::kThird}) {
    const auto shifts = placed(views, projection);
    for (std::size_t i = 0; i < views.size(); ++i) {
      const PlanExtent a = extentOf(views[i]);
      for (std::size_t j = 0; j < i; ++j) {
        const PlanExtent b = extentOf(views[j]);
        const auto gapAlong = [&](std::size_t axis, double lowA, double highA, double lowB,
                                  double highB) {
          const double a0 = lowA + (*shifts[i])[axis];
          const double b0 = lowB + (*shifts[j])[axis];
          return std::max(a0 - (b0 + highB - lowB), b0 - (a0 + highA - lowA));
        };
        const double across = gapAlong(0, a.minX, a.maxX, b.minX, b.maxX);
        const double up = gapAlong(1, a.minY, a.maxY, b.minY, b.maxY);
        EXPECT_GE(std::max(across, up), 1.0) << views[i] << " and " << views[j];
      }
    }
  }
}

TEST(PlaceViews, PrincipalViewsAreNotMovedAlongWhatTheyShare) {
  for (const ProjectionAngle projection : {ProjectionAngle::kFirst, ProjectionAngle::kThird}) {
    const auto shifts = placed({"top", "front", "bottom", "left", "right", "back"}, projection);
    EXPECT_EQ((*shifts[0])[0], 0.0);
    EXPECT_EQ((*shifts[2])[0], 0.0);
    for (const std::size_t beside : {3U, 4U, 5U}) {
      EXPECT_EQ((*shifts[beside])[1], 0.0);
    }
  }
}

TEST(PlaceViews, IsoStandsInTheMiddleOfItsRowAndColumn) {
  const auto shifts = placed({"front", "top", "right", "iso"}, ProjectionAngle::kThird);
  // Column of 5 by row of 4: the right view and the top are smaller.
  EXPECT_EQ(shifts[3], (Shift{6, 5}));
  EXPECT_EQ(shifts[2], (Shift{6.5, 0}));
  EXPECT_EQ(shifts[1], (Shift{0, 5}));
}

TEST(PlaceViews, ASheetNeedsNoFront) {
  const auto shifts = placed({"right", "iso"}, ProjectionAngle::kThird);
  EXPECT_EQ(shifts[0], (Shift{1.5, 0}));
  EXPECT_EQ(shifts[1], (Shift{1, 5}));
}

TEST(PlaceViews, AViewWithoutLinesTakesNoRoom) {
  const std::vector<std::string> views{"front", "top", "left"};
  const std::vector<PlanExtent> extents{extentOf("front"), {}, extentOf("left")};
  const auto shifts = placeViews(views, extents, ProjectionAngle::kThird, 1.0);
  EXPECT_EQ(shifts[1], std::nullopt);
  EXPECT_EQ(shifts[2], (Shift{-1, 0}));
}

}  // namespace
}  // namespace dxf2d
