#include "app/linework/crowd_thinning.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "app/linework/linework.h"
#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

constexpr double kTolerance = 1e-3;

Graph graphOf(const std::vector<PlanPoint>& ends) {
  Graph graph;
  for (PointNumber i = 0; i + 1 < ends.size(); i += 2) {
    graph.edges.push_back({i, i + 1});
  }
  graph.points = ends;
  return graph;
}

std::vector<PlanPoint> endsOf(const Graph& graph) {
  std::vector<PlanPoint> ends;
  for (const Edge edge : graph.edges) {
    ends.push_back(graph.points[edge.from]);
    ends.push_back(graph.points[edge.to]);
  }
  return ends;
}

// Segments of lengths from 100 to 200 on a line of 1000 in this direction.
std::vector<PlanPoint> crowd(double angle, std::size_t count) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(0.0, 800.0);
  std::uniform_real_distribution<double> size(100.0, 200.0);
  std::vector<PlanPoint> ends;
  for (std::size_t i = 0; i < count; ++i) {
    const double begin = place(random);
    const double end = begin + size(random);
    ends.push_back({begin * std::cos(angle), begin * std::sin(angle)});
    ends.push_back({end * std::cos(angle), end * std::sin(angle)});
  }
  return ends;
}

TEST(ThinCrowds, AFewSegmentsOnOneAnotherStay) {
  Graph graph = graphOf(crowd(0.0, 10));
  thinCrowds(graph, allEdges(graph), kTolerance);
  EXPECT_EQ(graph.edges.size(), 10U);
}

TEST(ThinCrowds, WhatIsLeftOfManyCoversThemAll) {
  for (const double angle : {0.0, 0.7, 1.5707963267948966, 2.9}) {
    const std::vector<PlanPoint> all = crowd(angle, 400);
    Graph graph = graphOf(all);
    thinCrowds(graph, allEdges(graph), kTolerance);
    EXPECT_LT(graph.edges.size(), 100U) << angle;
    EXPECT_LT(largestGap(all, endsOf(graph)), kTolerance) << angle;
  }
}

TEST(ThinCrowds, ParallelLinesStay) {
  std::vector<PlanPoint> ends;
  for (int i = 0; i < 200; ++i) {
    ends.push_back({0.0, i * 2e-3});
    ends.push_back({100.0, i * 2e-3});
  }
  Graph graph = graphOf(ends);
  thinCrowds(graph, allEdges(graph), kTolerance);
  EXPECT_EQ(graph.edges.size(), 200U);
}

TEST(ThinCrowds, ManySegmentsOnOneLineAreJoinedInLittleRoom) {
  std::vector<PlanPoint> ends = crowd(0.3, 100'000);
  const double tolerance = joinTolerance(ends);
  const Paths paths = joinSegments(std::move(ends), tolerance);
  ASSERT_EQ(paths.size(), 1U);
  EXPECT_LT(paths.points.size(), 10U);
}

}  // namespace
}  // namespace dxf2d::linework
