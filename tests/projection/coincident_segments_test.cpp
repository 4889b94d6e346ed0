#include "projection/coincident_segments.h"

#include <gtest/gtest.h>

#include <cmath>

namespace dxf2d::projection {
namespace {

constexpr double kWeld = 1e-6;

std::vector<GroupedSegment> left(std::vector<GroupedSegment> segments,
                                 std::vector<GroupedSegment> drawn) {
  return withoutCovered(segments, drawn, kWeld);
}

double lengthOf(const std::vector<GroupedSegment>& segments) {
  double length = 0;
  for (const GroupedSegment& segment : segments) {
    length += std::hypot(segment.to[0] - segment.from[0], segment.to[1] - segment.from[1]);
  }
  return length;
}

TEST(WithoutCovered, WhatLiesBetweenDrawnSegmentsStays) {
  const auto pieces = left({{{0, 1}, {10, 1}, 7}}, {{{2, 1}, {3, 1}, 1}, {{8, 1}, {6, 1}, 2}});
  ASSERT_EQ(pieces.size(), 3U);
  EXPECT_NEAR(lengthOf(pieces), 7, 1e-12);
  EXPECT_NEAR(pieces[1].from[0], 3, 1e-12);
  EXPECT_NEAR(pieces[1].to[0], 6, 1e-12);
  EXPECT_EQ(pieces[1].group, 7U);
}

TEST(WithoutCovered, PiecesKeepTheirDirection) {
  const auto pieces = left({{{0, 4}, {0, 0}, 0}}, {{{0, 1}, {0, 2}, 0}});
  ASSERT_EQ(pieces.size(), 2U);
  for (const GroupedSegment& piece : pieces) {
    EXPECT_GT(piece.from[1], piece.to[1]);
  }
  EXPECT_NEAR(lengthOf(pieces), 3, 1e-12);
}

TEST(WithoutCovered, EarlierSegmentsCoverLaterOnes) {
  const auto pieces = left({{{0, 0}, {2, 2}, 0}, {{3, 3}, {1, 1}, 1}, {{0, 0}, {3, 3}, 2}}, {});
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_NEAR(lengthOf(pieces), std::sqrt(18.0), 1e-9);
}

TEST(WithoutCovered, ParallelsAndCrossingsCoverNothing) {
  const std::vector<GroupedSegment> segments{{{0, 0}, {1, 0}, 0}};
  EXPECT_EQ(left(segments, {{{0, 0.001}, {1, 0.001}, 0}, {{0.5, -1}, {0.5, 1}, 0}}).size(), 1U);
  EXPECT_NEAR(lengthOf(left(segments, {{{1, 0}, {5, 0}, 0}})), 1, 1e-12);
}

TEST(WithoutCovered, DirectionsOnEitherSideOfAHalfTurnAreOne) {
  EXPECT_TRUE(left({{{0, 0}, {10, 1e-9}, 0}}, {{{10, 0}, {0, 1e-9}, 0}}).empty());
  EXPECT_TRUE(left({{{0, 0}, {10, -1e-9}, 0}}, {{{0, 0}, {10, 1e-9}, 0}}).empty());
}

TEST(WithoutCovered, CoveredTwiceIsCoveredOnce) {
  EXPECT_NEAR(lengthOf(left({{{0, 0}, {10, 0}, 0}},
                            {{{1, 0}, {5, 0}, 0}, {{4, 0}, {6, 0}, 0}, {{2, 0}, {3, 0}, 0}})),
              5, 1e-12);
}

TEST(JoinSegments, SidesInPiecesAndWholeAreALine) {
  // A side as a whole, and the same in three pieces: a loop without width.
  const std::vector<GroupedSegment> segments{
      {{0, 0}, {0, 1}, 3}, {{0, 0}, {0, 9}, 3}, {{0, 1}, {0, 7}, 3}, {{0, 7}, {0, 9}, 3}};
  const JoinedSegments joined = joinSegments(segments, kWeld);
  ASSERT_EQ(joined.polylines.Count(), 1U);
  ASSERT_EQ(joined.polylines.At(0).size(), 2U);
  EXPECT_NEAR(std::abs(joined.polylines.At(0)[1][1] - joined.polylines.At(0)[0][1]), 9, 1e-9);
}

TEST(JoinSegments, ALoopWithoutWidthIsALine) {
  // Two sides of a face on edge, as far apart as ends that are one.
  const std::vector<GroupedSegment> segments{{{0, 0}, {0, 5}, 3},
                                             {{0, 5}, {1e-9, 9}, 3},
                                             {{1e-9, 9}, {5e-10, 4}, 3},
                                             {{5e-10, 4}, {0, 0}, 3}};
  const JoinedSegments joined = joinSegments(segments, kWeld);
  ASSERT_EQ(joined.polylines.Count(), 1U);
  EXPECT_EQ(joined.polylines.At(0).size(), 2U);
}

TEST(PlaceTable, APointKeepsItsNumber) {
  PlaceTable places(1.0);
  EXPECT_EQ(places.NumberOf({0.0, 0.0}, 0), 0U);
  EXPECT_EQ(places.NumberOf({0.9, 0.0}, 0), 0U);
  // As near to the second point, but too far from the first.
  EXPECT_EQ(places.NumberOf({1.8, 0.0}, 0), 1U);
  EXPECT_EQ(places.NumberOf({0.9, 0.0}, 0), 0U);
  EXPECT_EQ(places.NumberOf({0.9, 0.0}, 7), 2U);
}

}  // namespace
}  // namespace dxf2d::projection
