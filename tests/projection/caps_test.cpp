#include "projection/caps.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace dxf2d::projection {
namespace {

using Triangles = std::vector<std::array<PlanPoint, 3>>;

constexpr double kWeld = 1e-6;

double areaOf(const Triangles& triangles) {
  double area = 0;
  for (const auto& [a, b, c] : triangles) {
    area += std::abs((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])) / 2;
  }
  return area;
}

TEST(AppendCap, FillsALoop) {
  const std::vector<GroupedSegment> loop = {
      {{0, 0}, {4, 0}, 0}, {{4, 0}, {4, 2}, 0}, {{4, 2}, {0, 2}, 0}, {{0, 2}, {0, 0}, 0}};
  Triangles triangles;
  EXPECT_TRUE(appendCap(loop, kWeld, triangles));
  EXPECT_NEAR(areaOf(triangles), 8, 1e-12);
}

TEST(AppendCap, FillsNothingThatEndsWithoutASide) {
  const std::vector<GroupedSegment> open = {
      {{4, 0}, {4, 2}, 0}, {{4, 2}, {0, 2}, 0}, {{0, 2}, {0, 0}, 0}};
  Triangles triangles;
  EXPECT_FALSE(appendCap(open, kWeld, triangles));
  EXPECT_TRUE(triangles.empty());
}

TEST(AppendCap, FillsAStepWhoseLevelSidesMeetWithinTheWeld) {
  // Two areas on each other, of which the upper is narrower; the level sides leave gaps.
  const std::vector<GroupedSegment> step = {
      {{0, 0}, {4, 0}, 0}, {{4, 0}, {4, 1}, 0}, {{4, 1}, {3 + 5e-7, 1}, 0}, {{3, 1}, {3, 2}, 0},
      {{3, 2}, {1, 2}, 0}, {{1, 2}, {1, 1}, 0}, {{1 - 5e-7, 1}, {0, 1}, 0}, {{0, 1}, {0, 0}, 0}};
  Triangles triangles;
  EXPECT_TRUE(appendCap(step, kWeld, triangles));
  EXPECT_NEAR(areaOf(triangles), 6, 1e-6);
}

}  // namespace
}  // namespace dxf2d::projection
