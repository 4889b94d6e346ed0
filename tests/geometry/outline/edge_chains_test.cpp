#include "geometry/outline/edge_chains.h"

#include <gtest/gtest.h>

#include <vector>

namespace dxf2d {

namespace {

using Edges = std::vector<Edge>;
using Indices = std::vector<int>;

Edges withoutCoincident(const std::vector<KtPoint3>& points, Edges edges) {
  ChainScratch scratch;
  removeCoincident(points, edges, scratch);
  return edges;
}

Indices chains(const Edges& edges, std::size_t pointCount) {
  ChainScratch scratch;
  Indices indices = {99};
  chainEdges(edges, pointCount, indices, scratch);
  return indices;
}

}  // namespace

TEST(RemoveCoincident, FirstEdgeOfASegmentStays) {
  // Points 2 and 3 stand where 0 and 1 do.
  const std::vector<KtPoint3> points = {{0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  EXPECT_EQ(withoutCoincident(points, {{0, 1}, {0, 3}, {1, 2}, {1, 4}, {2, 3}, {3, 4}}),
            (Edges{{0, 1}, {1, 4}}));
}

TEST(RemoveCoincident, TheSamePointsInBothOrdersAreOneSegment) {
  const std::vector<KtPoint3> points = {{0, 0, 0}, {1, 0, 0}};
  EXPECT_EQ(withoutCoincident(points, {{0, 1}, {1, 0}}), (Edges{{0, 1}}));
}

TEST(RemoveCoincident, EdgesWithoutLengthInPlanGo) {
  const std::vector<KtPoint3> points = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}};
  EXPECT_EQ(withoutCoincident(points, {{0, 0}, {0, 1}, {0, 2}}), (Edges{{0, 2}}));
}

TEST(RemoveCoincident, ZerosOfBothSignsAreOnePlace) {
  const std::vector<KtPoint3> points = {{0.0, 0, 0}, {-0.0, 0, 0}, {1, 0.0, 0}, {1, -0.0, 0}};
  EXPECT_EQ(withoutCoincident(points, {{0, 1}, {0, 2}, {1, 3}, {2, 3}}), (Edges{{0, 2}}));
}

TEST(RemoveCoincident, KeepsEdgesThatOnlyOverlap) {
  const std::vector<KtPoint3> points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  EXPECT_EQ(withoutCoincident(points, {{0, 1}, {0, 2}}), (Edges{{0, 1}, {0, 2}}));
}

TEST(RemoveCoincident, TakesAnEmptyList) { EXPECT_TRUE(withoutCoincident({}, {}).empty()); }

TEST(ChainEdges, NoEdgesGiveNoChains) { EXPECT_TRUE(chains({}, 3).empty()); }

TEST(ChainEdges, LoopEndsWhereItBegan) {
  EXPECT_EQ(chains({{0, 1}, {0, 3}, {1, 2}, {2, 3}}, 4), (Indices{0, 1, 2, 3, 0, -6}));
}

TEST(ChainEdges, SeparateEdgesAreChainsOfTheirOwn) {
  EXPECT_EQ(chains({{0, 1}, {2, 3}}, 4), (Indices{0, 1, -6, 2, 3, -6}));
}

TEST(ChainEdges, ChainGrowsByEitherEndOfAnEdge) {
  EXPECT_EQ(chains({{0, 4}, {2, 3}, {3, 4}}, 5), (Indices{0, 4, 3, 2, -6}));
}

TEST(ChainEdges, ChainNeverGrowsAtItsBeginning) {
  // (0, 2) and (0, 1) are one line, but the chain that begins with (0, 1) ends at 1.
  EXPECT_EQ(chains({{0, 1}, {0, 2}}, 3), (Indices{0, 1, -6, 0, 2, -6}));
}

TEST(ChainEdges, BranchTakesTheLowestEdgeLeft) {
  EXPECT_EQ(chains({{0, 1}, {1, 2}, {1, 3}, {1, 4}}, 5),
            (Indices{0, 1, 2, -6, 1, 3, -6, 1, 4, -6}));
}

TEST(ChainEdges, LoopThatTouchesAnotherClosesAtTheLowestEdge) {
  // Two triangles that share point 2.
  EXPECT_EQ(chains({{0, 1}, {0, 2}, {1, 2}, {2, 3}, {2, 4}, {3, 4}}, 5),
            (Indices{0, 1, 2, 0, -6, 2, 3, 4, 2, -6}));
}

TEST(ChainEdges, ExplicitEdgesRunTheirOwnWay) {
  EXPECT_EQ(chains({{1, 0}, {2, 1}}, 3), (Indices{1, 0, -6, 2, 1, -6}));
  EXPECT_EQ(chains({{0, 2}, {2, 1}}, 3), (Indices{0, 2, 1, -6}));
}

TEST(ChainEdges, EdgeFromItsEndToItselfIsRunOnce) {
  EXPECT_EQ(chains({{0, 1}, {1, 1}, {1, 2}}, 3), (Indices{0, 1, 1, 2, -6}));
}

}  // namespace dxf2d
