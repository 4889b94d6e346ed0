#include "geometry/face_wires.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "ktscene/kt_matrix.h"

namespace dxf2d {

namespace {

using Indices = std::vector<int>;
using Points = std::vector<KtPoint3>;

const Points kSquare = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

Indices segmentsOf(const Indices& runs, const Points& points) {
  return distinctSegments(runs, points, KtMatrix());
}

}  // namespace

TEST(RegroupRuns, TriangleListsAreJoinedThenFansThenStripsThenPolygons) {
  EXPECT_EQ(regroupRuns({0, 1, 2, 3, -7, 4, 5, 6, -3, 0, 1, 2, -5, 7, 8, 9, -4, 3, 4, 5, -5}),
            (Indices{0, 1, 2, 3, 4, 5, -5, 7, 8, 9, -4, 4, 5, 6, -3, 0, 1, 2, 3, -7}));
}

TEST(RegroupRuns, RunsOfAKindKeepTheirOrder) {
  EXPECT_EQ(regroupRuns({5, 6, 7, -4, 0, 1, 2, -4}), (Indices{5, 6, 7, -4, 0, 1, 2, -4}));
}

TEST(RegroupRuns, RunsOfOtherCodesAreDropped) {
  EXPECT_TRUE(regroupRuns({0, 1, -1, 0, 1, 2, -6, 0, 1, -2, 0, 1, 2, -8}).empty());
}

TEST(RegroupRuns, RunWithoutATerminatorIsDropped) {
  EXPECT_EQ(regroupRuns({0, 1, 2, -4, 3, 4, 5}), (Indices{0, 1, 2, -4}));
}

TEST(EdgeRuns, EdgeThatTwoTrianglesOfAPlaneShareCancelsOut) {
  EXPECT_EQ(edgeRuns({0, 1, 2, 0, 2, 3, -5}, true),
            (Indices{0, 1, -1, 0, 3, -1, 1, 2, -1, 2, 3, -1}));
}

TEST(EdgeRuns, EdgeThatThreeTrianglesOfAPlaneShareIsThereAgain) {
  EXPECT_EQ(edgeRuns({0, 1, 2, 0, 1, 3, 1, 0, 4, -5}, true),
            (Indices{0, 1, -1, 0, 2, -1, 0, 3, -1, 0, 4, -1, 1, 2, -1, 1, 3, -1, 1, 4, -1}));
}

TEST(EdgeRuns, OutOfAPlaneEveryEdgeStaysOnce) {
  EXPECT_EQ(edgeRuns({0, 1, 2, 0, 2, 3, -5}, false),
            (Indices{0, 1, -1, 0, 2, -1, 0, 3, -1, 1, 2, -1, 2, 3, -1}));
}

TEST(EdgeRuns, ListsWithIncompleteTrianglesAreIgnored) {
  EXPECT_TRUE(edgeRuns({0, 1, 2, 3, -5}, false).empty());
  EXPECT_TRUE(edgeRuns({0, 1, 2, 3, -5}, true).empty());
}

TEST(EdgeRuns, RunAfterAnIgnoredListIsRead) {
  EXPECT_EQ(edgeRuns({0, 1, 2, 3, -5, 4, 5, 6, -4}, false), (Indices{4, 5, 6, 4, -6}));
}

TEST(EdgeRuns, FanIsItsOuterLoop) {
  EXPECT_EQ(edgeRuns({5, 1, 2, 3, -4}, false), (Indices{5, 1, 2, 3, 5, -6}));
  EXPECT_TRUE(edgeRuns({5, 1, -4}, false).empty());
}

TEST(EdgeRuns, StripIsItsOuterLoop) {
  EXPECT_EQ(edgeRuns({0, 1, 2, -3}, false), (Indices{0, 1, 2, 0, -6}));
  EXPECT_EQ(edgeRuns({0, 1, 2, 3, -3}, false), (Indices{0, 1, 3, 2, 0, -6}));
  EXPECT_EQ(edgeRuns({0, 1, 2, 3, 4, -3}, false), (Indices{0, 1, 3, 4, 2, 0, -6}));
  EXPECT_TRUE(edgeRuns({0, 1, -3}, false).empty());
}

TEST(EdgeRuns, PolygonsAreIgnored) {
  EXPECT_TRUE(edgeRuns({0, 1, 2, -7, 1, 2, 3, -7}, false).empty());
}

TEST(DistinctSegments, LoopsClosingSegmentComesFirst) {
  EXPECT_EQ(segmentsOf({0, 1, 2, 0, -6}, kSquare),
            (Indices{0, 0, -1, 0, 1, -1, 1, 2, -1, 2, 0, -1}));
  EXPECT_EQ(segmentsOf({0, 1, 2, -6}, kSquare), (Indices{0, 2, -1, 0, 1, -1, 1, 2, -1}));
}

TEST(DistinctSegments, RunsOfOtherCodesHaveNoClosingSegment) {
  EXPECT_EQ(segmentsOf({0, 1, 2, -1}, kSquare), (Indices{0, 1, -1, 1, 2, -1}));
}

TEST(DistinctSegments, SegmentsWithinTheToleranceAreKeptOnce) {
  EXPECT_EQ(segmentsOf({0, 1, -1, 2, 3, -1}, {{0, 0, 0}, {1, 0, 0}, {0.00005, 0, 0}, {1, 0, 0}}),
            (Indices{0, 1, -1}));
}

TEST(DistinctSegments, HeightDoesNotCount) {
  EXPECT_EQ(segmentsOf({0, 1, -1, 2, 3, -1}, {{0, 0, 0}, {1, 0, 0}, {1, 0, 8}, {0, 0, 9}}),
            (Indices{0, 1, -1}));
}

TEST(DistinctSegments, EntriesThatNameNoPointAreInNoSegment) {
  EXPECT_EQ(segmentsOf({0, 1, 9, 2, 3, -6}, kSquare), (Indices{0, 3, -1, 0, 1, -1, 2, 3, -1}));
}

TEST(DistinctSegments, PointsThatAreNotFiniteAreInNoSegment) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(segmentsOf({0, 1, 2, 3, -1}, {{0, 0, 0}, {1, 0, 0}, {2, 0, kInfinity}, {3, 0, 0}}),
            (Indices{0, 1, -1}));
}

TEST(DistinctSegments, PointsThatTheMatrixTakesToInfinityAreInNoSegment) {
  KtMatrix matrix;
  double data[16];
  matrix.GetData(data);
  data[0] = 1e10;
  matrix.Init(data);
  EXPECT_EQ(distinctSegments({0, 1, 2, -1}, {{0, 0, 0}, {1, 0, 0}, {1e300, 0, 0}}, matrix),
            (Indices{0, 1, -1}));
}

}  // namespace dxf2d
