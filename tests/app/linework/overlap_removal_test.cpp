#include "app/linework/overlap_removal.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

// Total length of what joining leaves, and how many polylines that is.
void expectJoined(const std::vector<PlanPoint>& ends, std::size_t count, double total) {
  const Paths paths = join(ends);
  EXPECT_EQ(paths.size(), count);
  EXPECT_NEAR(totalLength(segmentsOf(paths)), total, 1e-4);
}

TEST(RemoveOverlaps, PartlyOverlappingSegmentsAreOne) {
  expectJoined({{0, 0}, {10, 0}, {15, 0}, {5, 0}}, 1, 15);
}

TEST(RemoveOverlaps, SegmentWithinAnotherGoes) {
  expectJoined({{0, 0}, {10, 0}, {2, 0}, {7, 0}}, 1, 10);
}

TEST(RemoveOverlaps, SegmentsThatShareAnEndAreOne) {
  expectJoined({{0, 0}, {10, 0}, {0, 0}, {4, 0}}, 1, 10);
}

TEST(RemoveOverlaps, AChainOfOverlapsIsOne) {
  std::vector<PlanPoint> ends;
  for (int i = 0; i < 50; ++i) {
    ends.push_back({2.0 * i, 1.0 * i});
    ends.push_back({2.0 * i + 3.0, 1.0 * i + 1.5});
  }
  expectJoined(ends, 1, std::hypot(101.0, 50.5));
}

TEST(RemoveOverlaps, RoundedDiagonalsAreOne) {
  const auto at = [](double share) {
    return PlanPoint{std::round(share * 7.31e6) / 1e6, std::round(share * 3.17e6) / 1e6};
  };
  std::vector<PlanPoint> ends = {at(0.0), at(0.61), at(0.33), at(1.0), at(0.4), at(0.5)};
  expectJoined(ends, 1, std::hypot(7.31, 3.17));
}

TEST(RemoveOverlaps, ParallelSegmentsCloseToOneAnotherStay) {
  expectJoined({{0, 0}, {10, 0}, {0, 0.001}, {10, 0.001}}, 2, 20);
}

TEST(RemoveOverlaps, SegmentsInOneLineApartStayApart) {
  expectJoined({{0, 0}, {4, 0}, {5, 0}, {10, 0}}, 2, 9);
}

TEST(RemoveOverlaps, ShortOnLongInEveryDirectionIsFound) {
  for (int degrees = 0; degrees < 360; ++degrees) {
    const double angle = degrees * 0.017453292519943295;
    const PlanPoint axis{std::cos(angle), std::sin(angle)};
    const auto at = [&](double along) { return PlanPoint{along * axis.x, along * axis.y}; };
    SCOPED_TRACE(degrees);
    expectJoined({at(0), at(100), at(37), at(36.99), at(60), at(61)}, 1, 100);
  }
}

TEST(RemoveOverlaps, WallsOfTwoRoomsShareTheirSide) {
  std::vector<PlanPoint> ends = segmentsOf({{0, 0}, {4, 0}, {4, 3}, {0, 3}}, true);
  append(ends, segmentsOf({{4, 1}, {8, 1}, {8, 5}, {4, 5}}, true));
  const Paths paths = join(ends);
  EXPECT_NEAR(totalLength(segmentsOf(paths)), 14 + 16 - 2, 1e-9);
}

TEST(RemoveOverlaps, ManyParallelLinesAreQuick) {
  // A hatch: compared with one another each, these would take minutes.
  std::vector<PlanPoint> ends;
  constexpr int kLines = 100'000;
  for (int i = 0; i < kLines; ++i) {
    ends.push_back({0.01 * i, 0.0});
    ends.push_back({0.01 * i + 500.0, 1000.0});
  }
  EXPECT_EQ(join(ends).size(), std::size_t{kLines});
}

}  // namespace
}  // namespace dxf2d::linework
