// Random linework full of overlaps and crossings: what joining may not change.
#include <gtest/gtest.h>

#include <random>

#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

// Segments between points of a small grid, a few of them turned, so that many lie on one another.
std::vector<PlanPoint> randomSegments(std::mt19937& random) {
  const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
  const unsigned size = 2 + below(6);
  const bool isTurned = below(2) == 0;
  std::vector<PlanPoint> ends(2 * (1 + below(40)));
  for (PlanPoint& end : ends) {
    const double x = below(size);
    const double y = below(size);
    end = isTurned ? PlanPoint{std::round((0.8 * x - 0.6 * y) * 1e6 / 3.0) / 1e6,
                               std::round((0.6 * x + 0.8 * y) * 1e6 / 3.0) / 1e6}
                   : PlanPoint{x, y};
  }
  // What has no length goes, and would be missed below.
  std::vector<PlanPoint> segments;
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    if (length(ends[i + 1] - ends[i]) > 0.0) {
      append(segments, {ends[i], ends[i + 1]});
    }
  }
  return segments;
}

TEST(RandomLinework, CoversTheSamePoints) {
  std::mt19937 random(1);
  for (int i = 0; i < 500; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = randomSegments(random);
    const double tolerance = joinTolerance(ends);
    if (tolerance == 0.0) {
      continue;
    }
    const std::vector<PlanPoint> joined = segmentsOf(joinSegments(ends, tolerance));
    EXPECT_LE(largestGap(ends, joined), 4.0 * tolerance);
    EXPECT_LE(largestGap(joined, ends), 4.0 * tolerance);
  }
}

TEST(RandomLinework, NoTwoSegmentsAreLeftOnOneAnother) {
  std::mt19937 random(2);
  for (int i = 0; i < 500; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> joined = segmentsOf(join(randomSegments(random)));
    for (std::size_t a = 0; a < joined.size(); a += 2) {
      const PlanPoint middle{(joined[a].x + joined[a + 1].x) / 2,
                             (joined[a].y + joined[a + 1].y) / 2};
      const PlanPoint axis = joined[a + 1] - joined[a];
      for (std::size_t b = 0; b < joined.size(); b += 2) {
        const PlanPoint other = joined[b + 1] - joined[b];
        const bool isParallel = std::abs(cross(axis, other)) < 1e-4 * length(axis) * length(other);
        if (a != b && isParallel) {
          EXPECT_GT(distanceToSegment(middle, joined[b], joined[b + 1]), 1e-5);
        }
      }
    }
  }
}

TEST(RandomLinework, JoiningTwiceIsJoiningOnce) {
  std::mt19937 random(3);
  for (int i = 0; i < 2000; ++i) {
    SCOPED_TRACE(i);
    const std::vector<PlanPoint> ends = randomSegments(random);
    const double tolerance = joinTolerance(ends);
    if (tolerance == 0.0) {
      continue;
    }
    const Paths once = joinSegments(ends, tolerance);
    const Paths twice = joinSegments(segmentsOf(once), tolerance);
    ASSERT_EQ(twice.size(), once.size());
    EXPECT_EQ(twice.ends, once.ends);
    EXPECT_EQ(twice.closed, once.closed);
    for (std::size_t j = 0; j < once.points.size() && j < twice.points.size(); ++j) {
      EXPECT_EQ(twice.points[j].x, once.points[j].x);
      EXPECT_EQ(twice.points[j].y, once.points[j].y);
    }
  }
}

}  // namespace
}  // namespace dxf2d::linework
