#include "app/linework/simplification.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/app/linework/segments.h"

namespace dxf2d::linework {
namespace {

TEST(Simplify, DropsWhatIsWithinTheTolerance) {
  const std::vector<PlanPoint> points = {{0, 0}, {1, 0.05}, {2, -0.05}, {3, 0}, {3, 4}};
  const auto simplified = simplify(points, false, 0.1);
  ASSERT_EQ(simplified.size(), 3U);
  EXPECT_EQ(simplified[1].x, 3.0);
  EXPECT_EQ(simplify(points, false, 0.01).size(), 5U);
}

TEST(Simplify, RingsStayRings) {
  const std::vector<PlanPoint> ring = {{0, 0}, {2, 0.01}, {4, 0}, {4, 4}, {2, 4.01}, {0, 4}};
  EXPECT_EQ(simplify(ring, true, 0.1).size(), 4U);
  EXPECT_EQ(simplify(ring, true, 100.0).size(), ring.size());
}

TEST(Simplify, ShortLinesStay) {
  EXPECT_EQ(simplify(std::vector<PlanPoint>{{0, 0}, {1, 0}}, false, 10.0).size(), 2U);
}

TEST(Simplify, RandomLinesStayWithinTheToleranceAndStaySoOnceMore) {
  std::mt19937 random(5);
  for (int i = 0; i < 200; ++i) {
    std::vector<PlanPoint> points(3 + random() % 100);
    double angle = 0.0;
    PlanPoint at;
    for (PlanPoint& point : points) {
      angle += (static_cast<double>(random() % 1000) - 500.0) / 1500.0;
      at = {at.x + std::cos(angle), at.y + std::sin(angle)};
      point = at;
    }
    const bool closed = i % 2 == 0;
    const auto once = simplify(points, closed, 0.5);
    const auto twice = simplify(once, closed, 0.5);
    EXPECT_EQ(once.size(), twice.size());
    for (const PlanPoint point : points) {
      double nearest = HUGE_VAL;
      for (std::size_t j = 0; j + (closed ? 0 : 1) < once.size(); ++j) {
        nearest = std::min(nearest, distanceToSegment(point, once[j], once[(j + 1) % once.size()]));
      }
      EXPECT_LE(nearest, 0.5);
    }
  }
}

}  // namespace
}  // namespace dxf2d::linework
