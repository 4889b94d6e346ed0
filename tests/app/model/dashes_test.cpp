#include "app/model/dashes.h"

#include <gtest/gtest.h>

namespace dxf2d {
namespace {

TEST(Dashes, ALineBeginsAndEndsWithADash) {
  const PlanPoints line{{0, 0}, {4, 0}};
  const std::vector<PlanPoints> dashes = dashesOf(line, 1.0);
  ASSERT_EQ(dashes.size(), 3u);
  EXPECT_EQ(dashes[0], (PlanPoints{{0, 0}, {1, 0}}));
  EXPECT_EQ(dashes[1], (PlanPoints{{1.5, 0}, {2.5, 0}}));
  EXPECT_EQ(dashes[2], (PlanPoints{{3, 0}, {4, 0}}));
}

TEST(Dashes, GapsAreStretched) {
  const std::vector<PlanPoints> dashes = dashesOf(PlanPoints{{0, 0}, {0, 3}}, 1.0);
  ASSERT_EQ(dashes.size(), 2u);
  EXPECT_EQ(dashes[1], (PlanPoints{{0, 2}, {0, 3}}));
}

TEST(Dashes, ADashGoesRoundACorner) {
  const std::vector<PlanPoints> dashes = dashesOf(PlanPoints{{0, 0}, {2, 0}, {2, 2}}, 1.0);
  ASSERT_EQ(dashes.size(), 3u);
  EXPECT_EQ(dashes[1], (PlanPoints{{1.5, 0}, {2, 0}, {2, 0.5}}));
}

TEST(Dashes, ADashThatEndsAtACornerHasItOnce) {
  const std::vector<PlanPoints> dashes = dashesOf(PlanPoints{{0, 0}, {1, 0}, {1, 1.5}}, 1.0);
  ASSERT_EQ(dashes.size(), 2u);
  EXPECT_EQ(dashes[0], (PlanPoints{{0, 0}, {1, 0}}));
  EXPECT_EQ(dashes[1], (PlanPoints{{1, 0.5}, {1, 1.5}}));
}

TEST(Dashes, AShortLineIsOne) {
  const PlanPoints line{{0, 0}, {1, 0}, {1, 1}};
  EXPECT_EQ(dashesOf(line, 1.0), std::vector<PlanPoints>{line});
}

TEST(Dashes, CountIsThatOfTheDashes) {
  for (const double dash : {0.3, 0.7, 1.0, 2.9, 100.0}) {
    const PlanPoints line{{0, 0}, {3, 4}, {6, 0}, {0, 0}};
    EXPECT_EQ(countDashes(line, dash), static_cast<double>(dashesOf(line, dash).size()));
  }
}

TEST(Dashes, DefaultIsAHundredthOfTheLongerSide) {
  EXPECT_DOUBLE_EQ(defaultDashLength({0, 0, 10, 400}), 4.0);
}

}  // namespace
}  // namespace dxf2d
