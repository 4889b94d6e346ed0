#include "geometry/segment_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace dxf2d {

TEST(Coincide, DifferenceOfExactlyTheToleranceStillMatches) {
  EXPECT_TRUE(coincide({0, 0, 1, 1}, {0.0001, 0, 1, 1}));
  EXPECT_TRUE(coincide({0, 0, 1, 1}, {0, -0.0001, 1, 1}));
}

TEST(Coincide, DifferenceJustAboveTheToleranceDoesNot) {
  const double above = std::nextafter(0.0001, 1.0);
  EXPECT_FALSE(coincide({0, 0, 1, 1}, {above, 0, 1, 1}));
  EXPECT_FALSE(coincide({1, 1, 0, 0}, {1, 1, 0, -above}));
}

TEST(Coincide, ReversedSegmentsMatch) {
  EXPECT_TRUE(coincide({0, 0, 1, 2}, {1, 2, 0, 0}));
  EXPECT_FALSE(coincide({0, 0, 1, 2}, {2, 1, 0, 0}));
}

TEST(SegmentGrid, SegmentsThatDifferByHalfTheToleranceAreOne) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({0, 0, 1, 0}));
  EXPECT_FALSE(grid.InsertIfAbsent({0.00005, 0, 1.00005, 0}));
}

TEST(SegmentGrid, DifferenceOfExactlyTheToleranceStillMatches) {
  // From every phase within a cell, so that it is crossed too.
  for (int step = 0; step < 100; ++step) {
    SegmentGrid grid;
    const double x = step * 0.00001;
    double y = x + 0.0001;
    while (y - x > 0.0001) {
      y = std::nextafter(y, 0.0);
    }
    EXPECT_TRUE(grid.InsertIfAbsent({x, 7, 3, 7})) << step;
    EXPECT_FALSE(grid.InsertIfAbsent({y, 7, 3, 7})) << step;
    EXPECT_FALSE(grid.InsertIfAbsent({3, 7, y, 7})) << step;
  }
}

TEST(SegmentGrid, DifferenceAboveTheToleranceIsAnother) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({0, 0, 1, 0}));
  EXPECT_TRUE(grid.InsertIfAbsent({0, 0.00011, 1, 0}));
}

TEST(SegmentGrid, OnlyKeptSegmentsAreComparedWith) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({0, 0, 1, 0}));
  EXPECT_FALSE(grid.InsertIfAbsent({0.00008, 0, 1, 0}));
  // Near the one that was dropped, not near the one that was kept.
  EXPECT_TRUE(grid.InsertIfAbsent({0.00016, 0, 1, 0}));
}

TEST(SegmentGrid, ReversedSegmentIsFoundByItsOtherEnd) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({0, 0, 100, 50}));
  EXPECT_FALSE(grid.InsertIfAbsent({100, 50, 0, 0}));
  EXPECT_FALSE(grid.InsertIfAbsent({100.00005, 49.99995, -0.00005, 0.00005}));
}

TEST(SegmentGrid, SegmentWithoutLengthIsKeptOnce) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({2, 2, 2, 2}));
  EXPECT_FALSE(grid.InsertIfAbsent({2, 2, 2, 2}));
}

TEST(SegmentGrid, ZerosOfBothSignsAreOnePlace) {
  SegmentGrid grid;
  EXPECT_TRUE(grid.InsertIfAbsent({0.0, 0.0, 1, 0}));
  EXPECT_FALSE(grid.InsertIfAbsent({-0.0, -0.0, 1, 0}));
}

TEST(SegmentGrid, FarCoordinatesMatchThemselvesAndNotTheirNeighbors) {
  for (const double far : {1e9, 1e12, 4e12, 1e15, 1e300, std::numeric_limits<double>::max()}) {
    SegmentGrid grid;
    const double next = std::nextafter(far, 0.0);
    EXPECT_TRUE(grid.InsertIfAbsent({far, -far, far, 0})) << far;
    EXPECT_FALSE(grid.InsertIfAbsent({far, 0, far, -far})) << far;
    EXPECT_EQ(grid.InsertIfAbsent({next, -far, far, 0}), far - next > kSegmentTolerance) << far;
  }
}

#ifndef NDEBUG
TEST(SegmentGridDeathTest, AssertsThatCoordinatesAreFinite) {
  SegmentGrid grid;
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_DEATH(grid.InsertIfAbsent({0, 0, infinity, 0}), "isfinite");
}
#endif

}  // namespace dxf2d
