#include "app/linework/linework.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

void expectPath(const Paths& paths, std::size_t number, bool closed,
                std::initializer_list<PlanPoint> points) {
  EXPECT_EQ(paths.closed.at(number) != 0, closed);
  const auto path = paths[number];
  ASSERT_EQ(path.size(), points.size());
  std::size_t i = 0;
  for (const PlanPoint point : points) {
    EXPECT_EQ(path[i].x, point.x) << i;
    EXPECT_EQ(path[i].y, point.y) << i;
    ++i;
  }
}

TEST(JoinSegments, NothingGivesNothing) {
  EXPECT_EQ(joinTolerance({}), 0.0);
  EXPECT_EQ(joinSegments({}, 1.0).size(), 0U);
}

TEST(JoinSegments, SquareOfSeparateSegmentsIsOneRing) {
  const Paths paths = join({{0, 0}, {4, 0}, {4, 3}, {4, 0}, {0, 3}, {0, 0}, {4, 3}, {0, 3}});
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, true, {{0, 0}, {4, 0}, {4, 3}, {0, 3}});
}

TEST(JoinSegments, OpenRunKeepsTheDirectionOfItsFirstSegment) {
  const Paths paths = join({{4, 0}, {4, 3}, {0, 0}, {4, 0}});
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, false, {{0, 0}, {4, 0}, {4, 3}});
}

TEST(JoinSegments, EndsThatNearlyMeetMeet) {
  const Paths paths = join({{0, 0}, {4, 0}, {4.000001, 0.000001}, {4, 3}});
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, false, {{0, 0}, {4, 0}, {4, 3}});
}

TEST(JoinSegments, EndsApartStayApart) {
  EXPECT_EQ(join({{0, 0}, {4, 0}, {4.0001, 0}, {4, 3}}).size(), 2U);
}

TEST(JoinSegments, SegmentsWithoutLengthGo) {
  const Paths paths = join({{0, 0}, {4, 0}, {2, 2}, {2, 2}});
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, false, {{0, 0}, {4, 0}});
}

TEST(JoinSegments, PointsOnAStraightLineGo) {
  const Paths paths = join(segmentsOf({{2, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {0.1, 0}}, true));
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, true, {{4, 0}, {4, 4}, {0, 4}, {0, 0}});
}

TEST(JoinSegments, DecimalPointsOnADiagonalGo) {
  const Paths paths = join(segmentsOf({{0.1, 0.1}, {0.2, 0.2}, {0.3, 0.3}, {0.7, 0.7}}));
  ASSERT_EQ(paths.size(), 1U);
  expectPath(paths, 0, false, {{0.1, 0.1}, {0.7, 0.7}});
}

TEST(JoinSegments, LinesGoStraightThroughACrossing) {
  const Paths paths = join({{0, 1}, {1, 1}, {1, 0}, {1, 1}, {1, 1}, {2, 1}, {1, 1}, {1, 2}});
  ASSERT_EQ(paths.size(), 2U);
  expectPath(paths, 0, false, {{0, 1}, {2, 1}});
  expectPath(paths, 1, false, {{1, 0}, {1, 2}});
}

TEST(JoinSegments, TheStemOfATEndsAtItsBar) {
  const Paths paths = join({{0, 0}, {1, 0}, {1, 0}, {1, 5}, {1, 0}, {2, 0}});
  ASSERT_EQ(paths.size(), 2U);
  expectPath(paths, 0, false, {{0, 0}, {2, 0}});
  expectPath(paths, 1, false, {{1, 0}, {1, 5}});
}

TEST(JoinSegments, LinesThatCrossWithoutAPointAreLeftAlone) {
  EXPECT_EQ(join({{0, 0}, {2, 2}, {0, 2}, {2, 0}}).size(), 2U);
}

TEST(JoinSegments, SquareDrawnTwiceIsOneRing) {
  std::vector<PlanPoint> ends = segmentsOf({{0, 0}, {4, 0}, {4, 3}, {0, 3}}, true);
  append(ends, segmentsOf({{4, 3}, {4, 0}, {0, 0}, {0, 3}}, true));
  const Paths paths = join(ends);
  ASSERT_EQ(paths.size(), 1U);
  EXPECT_TRUE(paths.closed[0]);
}

TEST(JoinSegments, CircleOfChordsIsOneRing) {
  constexpr int kChords = 720;
  std::vector<PlanPoint> ends;
  const auto at = [](int i) {
    const double angle = 2.0 * std::numbers::pi * (i % kChords) / kChords;
    return PlanPoint{100.0 * std::cos(angle), 100.0 * std::sin(angle)};
  };
  for (int i = 0; i < kChords; ++i) {
    // Every other chord backwards, and not in a row.
    const int chord = i * 7 % kChords;
    ends.push_back(at(chord + i % 2));
    ends.push_back(at(chord + 1 - i % 2));
  }
  const Paths paths = join(ends);
  ASSERT_EQ(paths.size(), 1U);
  EXPECT_TRUE(paths.closed[0]);
  EXPECT_EQ(paths.points.size(), 720U);
}

TEST(JoinSegments, FarFromTheOriginIsAsNearIt) {
  std::vector<PlanPoint> ends = segmentsOf({{0, 0}, {4, 0}, {4, 3}, {0, 3}}, true);
  append(ends, segmentsOf({{1, 0}, {3, 0}}));
  for (PlanPoint& end : ends) {
    end = {end.x + 5e6, end.y - 4e7};
  }
  const Paths paths = join(ends);
  ASSERT_EQ(paths.size(), 1U);
  EXPECT_EQ(paths[0].size(), 4U);
}

TEST(JoinSegments, AFanOfManyEdgesStaysApart) {
  std::vector<PlanPoint> ends;
  for (int i = 0; i < 1000; ++i) {
    const double angle = i * 0.003;
    ends.push_back({0, 0});
    ends.push_back({std::cos(angle), std::sin(angle)});
  }
  EXPECT_EQ(join(ends).size(), 1000U);
}

TEST(JoinTolerance, IsAMillionthOfTheLongerSide) {
  EXPECT_DOUBLE_EQ(joinTolerance({{-1, 0}, {3, 1}}), 4e-6);
}

TEST(JoinTolerance, IsZeroWhereNothingCanBeJoined) {
  EXPECT_EQ(joinTolerance({{1, 1}, {1, 1}}), 0.0);
  EXPECT_EQ(joinTolerance({{0, 0}, {1e200, 0}}), 0.0);
  EXPECT_EQ(joinTolerance({{0, 0}, {1e-200, 0}}), 0.0);
}

}  // namespace
}  // namespace dxf2d::linework
