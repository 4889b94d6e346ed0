#include "app/preview/page_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace dxf2d {

namespace {

PlanExtents extentsOf(PlanPoint low, PlanPoint high) {
  PlanExtents extents;
  extents.Add(low);
  extents.Add(high);
  return extents;
}

void expectOnPage(const PageFit& fit, PlanPoint point) {
  const PlanPoint page = fit.Apply(point);
  EXPECT_GE(page.x, 0.0);
  EXPECT_GE(page.y, 0.0);
  EXPECT_LE(page.x, fit.width);
  EXPECT_LE(page.y, fit.height);
}

TEST(PageFit, SquareFillsThePageInsideItsMargin) {
  const PageFit fit = fitPage(extentsOf({0, 0}, {100, 100}), 400);
  EXPECT_EQ(fit.width, 400);
  EXPECT_EQ(fit.height, 400);
  EXPECT_NEAR(fit.Apply({0, 0}).x, 10.0, 1e-9);
  EXPECT_NEAR(fit.Apply({0, 0}).y, 390.0, 1e-9);
  EXPECT_NEAR(fit.Apply({100, 100}).y, 10.0, 1e-9);
}

TEST(PageFit, LongerSideFollowsTheDrawing) {
  const PageFit wide = fitPage(extentsOf({0, 0}, {100, 50}), 400);
  EXPECT_EQ(wide.width, 400);
  EXPECT_EQ(wide.height, 210);
  const PageFit high = fitPage(extentsOf({0, 0}, {50, 100}), 400);
  EXPECT_EQ(high.width, 210);
  EXPECT_EQ(high.height, 400);
}

TEST(PageFit, FlatDrawingStillHasAPage) {
  const PageFit fit = fitPage(extentsOf({0, 5}, {100, 5}), 400);
  EXPECT_EQ(fit.height, 100);
  EXPECT_NEAR(fit.Apply({50, 5}).y, 50.0, 1e-9);
}

TEST(PageFit, PointComesIntoTheMiddle) {
  const PageFit fit = fitPage(extentsOf({7, 7}, {7, 7}), 400);
  EXPECT_NEAR(fit.Apply({7, 7}).x, fit.width / 2.0, 1e-9);
}

TEST(PageFit, WholeRangeOfNumbersFits) {
  constexpr double kMost = std::numeric_limits<double>::max();
  const PageFit fit = fitPage(extentsOf({-kMost, -kMost}, {kMost, kMost}), 1600);
  expectOnPage(fit, {kMost, -kMost});
  expectOnPage(fit, {-kMost, kMost});
}

TEST(PageFit, SmallestNumbersFit) {
  constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  const PageFit fit = fitPage(extentsOf({0, 0}, {kLeast, kLeast}), 1600);
  EXPECT_TRUE(std::isfinite(fit.scale));
  expectOnPage(fit, {kLeast, 0});
}

TEST(PlanExtents, PointThatIsNotFiniteTakesNoPart) {
  PlanExtents extents = extentsOf({1, 1}, {2, 2});
  extents.Add({INFINITY, 0});
  extents.Add({0, NAN});
  EXPECT_FALSE(extents.IsFinite());
  EXPECT_EQ(extents.Low().x, 1.0);
  EXPECT_EQ(extents.High().x, 2.0);
}

}  // namespace

}  // namespace dxf2d
