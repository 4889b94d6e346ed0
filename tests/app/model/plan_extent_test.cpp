#include "app/model/plan_extent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace dxf2d {
namespace {

PlanPlacement turned(double angle) {
  PlanPlacement placement;
  placement.cosine = std::cos(angle);
  placement.sine = std::sin(angle);
  placement.shift = {10.0, 20.0, 0.0};
  return placement;
}

TEST(HullPoints, OnlyReferencedPointsCount) {
  HullPoints hull(false);
  hull.Add({0, 0, 0, 5, 5, 0, 1, 2, 0}, {0, 2, -6});
  PlanExtent extent;
  addPlaced(hull.Take(), PlanPlacement{}, extent);
  EXPECT_EQ(extent.maxX, 1.0);
  EXPECT_EQ(extent.maxY, 2.0);
}

TEST(HullPoints, NoReferencedPointGivesNoHull) {
  HullPoints hull(true);
  hull.Add({0, 0, 0}, {-7, -6});
  EXPECT_TRUE(hull.Take().empty());
}

TEST(HullPoints, TurnedExtentsAreThoseOfAllPoints) {
  std::mt19937 random(4);
  std::normal_distribution<double> coordinate;
  std::vector<double> coords;
  std::vector<int> indices;
  // More than are gathered at a time.
  for (int i = 0; i < 200000; ++i) {
    for (int k = 0; k < 3; ++k) {
      coords.push_back(coordinate(random));
    }
    indices.push_back(i);
  }
  HullPoints hull(true);
  hull.Add(coords, indices);
  const PlanPoints points = hull.Take();
  EXPECT_LT(points.size(), 100u);
  for (const double angle : {0.0, 0.3, 1.0, 2.5, 4.0}) {
    const PlanPlacement placement = turned(angle);
    PlanExtent expected;
    for (std::size_t i = 0; i < coords.size(); i += 3) {
      addPlaced({{coords[i], coords[i + 1]}}, placement, expected);
    }
    PlanExtent extent;
    addPlaced(points, placement, extent);
    EXPECT_EQ(extent.minX, expected.minX);
    EXPECT_EQ(extent.minY, expected.minY);
    EXPECT_EQ(extent.maxX, expected.maxX);
    EXPECT_EQ(extent.maxY, expected.maxY);
  }
}

TEST(HullPoints, PointsOnOneLineKeepTheirEnds) {
  HullPoints hull(true);
  hull.Add({0, 0, 0, 1, 1, 0, 2, 2, 0, 3, 3, 0}, {1, 0, 3, 2, -6});
  PlanExtent extent;
  addPlaced(hull.Take(), PlanPlacement{}, extent);
  EXPECT_EQ(extent.minX, 0.0);
  EXPECT_EQ(extent.maxY, 3.0);
}

}  // namespace
}  // namespace dxf2d
