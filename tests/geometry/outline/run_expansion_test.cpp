#include "geometry/outline/run_expansion.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/geometry/outline/random_sets.h"

namespace dxf2d {

namespace {

using Indices = std::vector<int>;
using Edges = std::vector<Edge>;

constexpr std::size_t kPoints = 10;

ExpandedRuns expand(const Indices& indices, SegmentRuns segmentRuns = SegmentRuns::kExactlyTwo) {
  ExpandedRuns runs;
  expandRuns(indices, kPoints, segmentRuns, runs);
  return runs;
}

}  // namespace

TEST(ExpandRuns, PolygonIsCopiedAsItStands) {
  const ExpandedRuns runs = expand({4, 3, 2, 4, -7});
  EXPECT_EQ(runs.polygons, (Indices{4, 3, 2, 4, -7}));
  EXPECT_TRUE(runs.edges.empty());
}

TEST(ExpandRuns, LineStripIsAnEdgeForEachPairInRunOrder) {
  const ExpandedRuns runs = expand({4, 3, 5, -6});
  EXPECT_EQ(runs.edges, (Edges{{4, 3}, {3, 5}}));
  EXPECT_TRUE(runs.polygons.empty());
}

TEST(ExpandRuns, TriangleListIsAPolygonForEachThree) {
  EXPECT_EQ(expand({0, 1, 2, 3, 4, 5, -5}).polygons, (Indices{0, 1, 2, -7, 3, 4, 5, -7}));
}

TEST(ExpandRuns, TrailingGroupTakesWhatFollowsInTheList) {
  EXPECT_EQ(expand({0, 1, 2, 3, -5, 8, 9, -1}).polygons, (Indices{0, 1, 2, -7, 3, -5, 8, -7}));
  EXPECT_EQ(expand({0, 1, 2, 3, 4, -5, 8, 9, -1}).polygons, (Indices{0, 1, 2, -7, 3, 4, -5, -7}));
}

TEST(ExpandRuns, TrailingGroupEndsWithTheList) {
  EXPECT_EQ(expand({0, 1, 2, 3, -5}).polygons, (Indices{0, 1, 2, -7, 3, -5, -7}));
  EXPECT_EQ(expand({0, 1, 2, 3, -5, 6}).polygons, (Indices{0, 1, 2, -7, 3, -5, 6, -7}));
}

TEST(ExpandRuns, FanTurnsAboutItsFirstPoint) {
  EXPECT_EQ(expand({5, 1, 2, 3, 4, -4}).polygons, (Indices{5, 1, 2, -7, 5, 2, 3, -7, 5, 3, 4, -7}));
}

TEST(ExpandRuns, StripKeepsOneOrientation) {
  EXPECT_EQ(expand({0, 1, 2, 3, 4, -3}).polygons, (Indices{0, 1, 2, -7, 1, 3, 2, -7, 2, 3, 4, -7}));
}

TEST(ExpandRuns, SegmentOfTwoIsAnEdge) {
  EXPECT_EQ(expand({7, 3, -1}).edges, (Edges{{7, 3}}));
  EXPECT_EQ(expand({7, 3, -1}, SegmentRuns::kStrips).edges, (Edges{{7, 3}}));
}

TEST(ExpandRuns, SegmentOfAnotherLengthIsIgnoredInAFaceSetAndAStripInALineSet) {
  EXPECT_TRUE(expand({7, 3, 4, -1}).edges.empty());
  EXPECT_EQ(expand({7, 3, 4, -1}, SegmentRuns::kStrips).edges, (Edges{{7, 3}, {3, 4}}));
  EXPECT_TRUE(expand({7, -1}, SegmentRuns::kStrips).edges.empty());
}

TEST(ExpandRuns, RunsBelowTheirMinimumAreDropped) {
  for (const int code : {-7, -5, -4, -3}) {
    const ExpandedRuns runs = expand({0, 1, code});
    EXPECT_TRUE(runs.polygons.empty()) << code;
    EXPECT_TRUE(runs.edges.empty()) << code;
  }
  EXPECT_TRUE(expand({0, -6}).edges.empty());
  EXPECT_TRUE(expand({0, -1}).edges.empty());
}

TEST(ExpandRuns, OtherCodesAreIgnored) {
  for (const int code : {-2, -8, -100}) {
    const ExpandedRuns runs = expand({0, 1, 2, code, 3, 4, -1});
    EXPECT_TRUE(runs.polygons.empty()) << code;
    EXPECT_EQ(runs.edges, (Edges{{3, 4}})) << code;
  }
}

TEST(ExpandRuns, RunWithoutATerminatorIsDropped) {
  EXPECT_EQ(expand({0, 1, -1, 2, 3}).edges, (Edges{{0, 1}}));
}

TEST(ExpandRuns, TwoEntriesAfterACodeAreNeverCodes) {
  // The -6 after one entry ends no run and is an entry of the run that -7 ends.
  EXPECT_EQ(expand({0, 1, -1, 2, -6, 3, -7}).edges, (Edges{{0, 1}}));
  EXPECT_EQ(expand({0, 1, -1, 2, -6, 3, -7}).polygons, (Indices{2, -6, 3, -7}));
  EXPECT_EQ(expand({0, 1, -1, -2, -2, 4, 5, -6}).edges, (Edges{{0, 1}, {4, 5}}));
}

TEST(ExpandRuns, PastTheSkippedEntriesCodesCountAgain) {
  EXPECT_EQ(expand({0, 1, -1, 2, 3, -1, 4, 5, -1}).edges, (Edges{{0, 1}, {2, 3}, {4, 5}}));
}

TEST(ExpandRuns, ACodeThatBeginsTheListIsLookedAt) {
  // Its run is empty, and the two after it are skipped.
  EXPECT_EQ(expand({-7, 0, 1, -1}).edges, (Edges{{0, 1}}));
  EXPECT_EQ(expand({-7, 0, -1, 2, 3, -6}).edges, (Edges{{2, 3}}));
}

TEST(ExpandRuns, ExplicitEdgesToInvalidPointsAreDropped) {
  EXPECT_EQ(expand({0, 1, 10, 2, 3, -6}).edges, (Edges{{0, 1}, {2, 3}}));
  EXPECT_TRUE(expand({0, 10, -1}).edges.empty());
}

TEST(ExpandRuns, ExplicitEdgesAreNeitherOrderedNorChecked) {
  EXPECT_EQ(expand({5, 5, 2, 5, 2, -6}).edges, (Edges{{5, 5}, {5, 2}, {2, 5}, {5, 2}}));
}

TEST(ExpandRuns, WhatTheRunsHeldBeforeIsReplaced) {
  ExpandedRuns runs;
  expandRuns({0, 1, 2, -7, 3, 4, -1}, kPoints, SegmentRuns::kExactlyTwo, runs);
  expandRuns({}, kPoints, SegmentRuns::kExactlyTwo, runs);
  EXPECT_TRUE(runs.polygons.empty());
  EXPECT_TRUE(runs.edges.empty());
}

TEST(IsPolygonList, IsTrueForPolygonsAlone) {
  EXPECT_TRUE(isPolygonList({0, 1, 2, -7, 3, 4, 5, 6, -7}));
  EXPECT_TRUE(isPolygonList({}));
}

TEST(IsPolygonList, IsFalseWithOtherRunsOrShortPolygons) {
  EXPECT_FALSE(isPolygonList({0, 1, 2, -7, 3, 4, 5, -5}));
  EXPECT_FALSE(isPolygonList({0, 1, -7}));
  EXPECT_FALSE(isPolygonList({0, 1, 2, -7, 3, 4, -2}));
  EXPECT_FALSE(isPolygonList({0, 1, 2, -5, 3, 4, 5, -7}));
}

TEST(IsPolygonList, IsFalseWithEntriesAfterTheLastRun) {
  EXPECT_FALSE(isPolygonList({0, 1, 2, -7, 3, 4}));
  EXPECT_FALSE(isPolygonList({0, 1, 2, -7, -7}));
  EXPECT_FALSE(isPolygonList({0, 1, 2}));
}

TEST(IsPolygonList, CodeRightAfterACodeIsNotLookedAt) {
  EXPECT_TRUE(isPolygonList({0, 1, 2, -7, -6, 4, 5, -7}));
}

TEST(IsPolygonList, ExpandingAPolygonListCopiesIt) {
  Random random(1);
  int lists = 0;
  for (int i = 0; i < 100000; ++i) {
    Indices indices;
    for (std::uint64_t length = below(random, 14); length > 0; --length) {
      indices.push_back(static_cast<int>(below(random, 5)) == 0 ? -6
                        : below(random, 3) == 0                 ? -7
                                                : static_cast<int>(below(random, kPoints)));
    }
    if (!isPolygonList(indices)) {
      continue;
    }
    ++lists;
    const ExpandedRuns runs = expand(indices);
    EXPECT_TRUE(runs.edges.empty());
    ASSERT_EQ(runs.polygons, indices);
  }
  EXPECT_GT(lists, 1000);
}

TEST(TriangleRunsOf, TellsSeparateTrianglesFromOthers) {
  for (const std::size_t threads : {1U, 3U}) {
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, 4, 5, -7}, threads), TriangleRuns::kSeparate);
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, 5, 4, -7}, threads), TriangleRuns::kAny);
    EXPECT_EQ(triangleRunsOf({3, 4, 5, -7, 0, 1, 2, -7}, threads), TriangleRuns::kAny);
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, 4, 5, -6}, threads), TriangleRuns::kOther);
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, 4, -7, 5}, threads), TriangleRuns::kOther);
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, -4, 5, -7}, threads), TriangleRuns::kOther);
    EXPECT_EQ(triangleRunsOf({0, 1, 2, -7, 3, 4, 5, 6, -7}, threads), TriangleRuns::kOther);
    EXPECT_EQ(triangleRunsOf({}, threads), TriangleRuns::kOther);
  }
}

TEST(TriangleRunsOf, FindsTheOneThatDiffersInALongList) {
  Indices indices;
  for (int i = 0; i < 3000; ++i) {
    indices.insert(indices.end(), {3 * i, 3 * i + 1, 3 * i + 2, -7});
  }
  for (const std::size_t place : {0U, 4U * 1023, 4U * 1024, 4U * 2999}) {
    for (const std::size_t threads : {1U, 2U, 17U}) {
      Indices changed = indices;
      EXPECT_EQ(triangleRunsOf(changed, threads), TriangleRuns::kSeparate);
      changed[place + 1] = 0;
      EXPECT_EQ(triangleRunsOf(changed, threads), TriangleRuns::kAny);
      changed[place + 3] = -1;
      EXPECT_EQ(triangleRunsOf(changed, threads), TriangleRuns::kOther);
    }
  }
}

}  // namespace dxf2d
