#include "projection/triangulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace dxf2d::projection {
namespace {

std::vector<Index> numbered(std::size_t count) {
  std::vector<Index> corners(count);
  std::iota(corners.begin(), corners.end(), Index{0});
  return corners;
}

// Twice the sum of the triangles' areas in plan, each counted as positive.
double doubledArea(const std::vector<Point>& points, const Triangulation& triangulation) {
  double sum = 0;
  for (const auto& triangle : triangulation.Triangles()) {
    const Point& a = points[triangle.corners[0]];
    const Point& b = points[triangle.corners[1]];
    const Point& c = points[triangle.corners[2]];
    sum += std::abs((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]));
  }
  return sum;
}

int edgeCount(const Triangulation& triangulation) {
  int count = 0;
  for (const auto& triangle : triangulation.Triangles()) {
    count += (triangle.polygonEdges & 1) + (triangle.polygonEdges >> 1 & 1) +
             (triangle.polygonEdges >> 2 & 1);
  }
  return count;
}

TEST(Triangulation, ConcavePolygonIsCoveredOnce) {
  const std::vector<Point> points = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}};
  Triangulation triangulation;
  triangulation.Run(points, numbered(points.size()));
  EXPECT_EQ(triangulation.Triangles().size(), 3U);
  EXPECT_NEAR(doubledArea(points, triangulation), 2 * (16 - 6), 1e-12);
  EXPECT_EQ(edgeCount(triangulation), 5);
}

TEST(Triangulation, PolygonsThatFaceAwayOrStandUprightAreCutToo) {
  for (const bool isUpright : {false, true}) {
    std::vector<Point> points = {{0, 4, 0}, {2, 1, 0}, {4, 4, 0}, {4, 0, 0}, {0, 0, 0}};
    for (Point& point : points) {
      point[2] = isUpright ? 100 * point[0] : 0.1 * point[0];
    }
    Triangulation triangulation;
    triangulation.Run(points, numbered(points.size()));
    EXPECT_NEAR(doubledArea(points, triangulation), 2 * (16 - 6), 1e-9);
  }
}

TEST(Triangulation, CornersOnAStraightLineLeaveNoTriangleWithoutArea) {
  const std::vector<Point> points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {3, 3, 0}};
  Triangulation triangulation;
  triangulation.Run(points, numbered(points.size()));
  ASSERT_EQ(triangulation.Triangles().size(), 3U);
  EXPECT_NEAR(doubledArea(points, triangulation), 9, 1e-12);
  for (const auto& triangle : triangulation.Triangles()) {
    EXPECT_TRUE(std::ranges::count(triangle.corners, 4U) == 1);
  }
}

TEST(Triangulation, PolygonThatRunsAlongABridgeToItsHoleLeavesTheHoleOpen) {
  const std::vector<Point> points = {{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {0, 6, 0}, {0, 0, 0},
                                     {2, 2, 0}, {2, 4, 0}, {4, 4, 0}, {4, 2, 0}, {2, 2, 0}};
  Triangulation triangulation;
  triangulation.Run(points, numbered(points.size()));
  EXPECT_NEAR(doubledArea(points, triangulation), 2 * (36 - 4), 1e-12);
}

TEST(Triangulation, PolygonThatCrossesItselfEnds) {
  const std::vector<Point> points = {{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 4, 0}, {2, -3, 0}};
  Triangulation triangulation;
  triangulation.Run(points, numbered(points.size()));
  EXPECT_EQ(triangulation.Triangles().size(), 3U);
}

TEST(Triangulation, StarOfManyCornersIsCoveredOnce) {
  constexpr std::size_t kCorners = 20000;
  std::vector<Point> points;
  double expected = 0;
  for (std::size_t i = 0; i < kCorners; ++i) {
    const double angle = 2 * std::numbers::pi * static_cast<double>(i) / kCorners;
    const double radius = i % 2 == 0 ? 2 : 1.5;
    points.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  for (std::size_t i = 0; i < kCorners; ++i) {
    const Point& p = points[i];
    const Point& q = points[(i + 1) % kCorners];
    expected += p[0] * q[1] - p[1] * q[0];
  }
  Triangulation triangulation;
  triangulation.Run(points, numbered(kCorners));
  EXPECT_NEAR(doubledArea(points, triangulation), expected, 1e-9);
}

}  // namespace
}  // namespace dxf2d::projection
