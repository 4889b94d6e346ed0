#include "geometry/weld.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

void weld(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  WeldScratch scratch;
  weldPoints(points, indices, scratch);
}

}  // namespace

TEST(WeldPoints, EqualPointsBecomeTheFirstOfThem) {
  std::vector<KtPoint3> points = {{1, 2, 3}, {4, 5, 6}, {1, 2, 3}, {7, 8, 9}, {4, 5, 6}};
  std::vector<int> indices = {0, 1, 2, 3, 4, -6};
  weld(points, indices);
  EXPECT_EQ(points, (std::vector<KtPoint3>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}));
  EXPECT_EQ(indices, (std::vector<int>{0, 1, 0, 2, 1, -6}));
}

TEST(WeldPoints, NegativeZeroEqualsZeroAndTheFirstOfThemIsKept) {
  std::vector<KtPoint3> points = {{-0.0, 0, 1}, {0.0, -0.0, 1}, {0.0, 0.0, 1}};
  std::vector<int> indices = {2, 1, 0, -6};
  weld(points, indices);
  ASSERT_EQ(points.size(), 1U);
  EXPECT_TRUE(std::signbit(points[0].Get0()));
  EXPECT_FALSE(std::signbit(points[0].Get1()));
  EXPECT_EQ(indices, (std::vector<int>{0, 0, 0, -6}));
}

TEST(WeldPoints, NeighbouringNumbersAreDifferentPoints) {
  std::vector<KtPoint3> points = {{1, 0, 0}, {std::nextafter(1.0, 2.0), 0, 0}};
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_EQ(points.size(), 2U);
  EXPECT_EQ(indices, (std::vector<int>{0, 1, -1}));
}

TEST(WeldPoints, PointsThatAreNotFiniteAreDropped) {
  std::vector<KtPoint3> points = {
      {kNan, 0, 0}, {1, 0, 0}, {0, kInfinity, 0}, {2, 0, 0}, {0, 0, -kInfinity}};
  std::vector<int> indices = {0, 1, 2, 3, 4, -6};
  weld(points, indices);
  EXPECT_EQ(points, (std::vector<KtPoint3>{{1, 0, 0}, {2, 0, 0}}));
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, 0, kNoPoint, 1, kNoPoint, -6}));
}

TEST(WeldPoints, HugePointsAreFinite) {
  constexpr double kMax = std::numeric_limits<double>::max();
  std::vector<KtPoint3> points = {{kMax, kMax, kMax}, {-kMax, kMax, -kMax}};
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_EQ(points.size(), 2U);
}

TEST(WeldPoints, EntriesThatNameNoPointNameNoneAfterwards) {
  std::vector<KtPoint3> points = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}};
  std::vector<int> indices = {3, 2, std::numeric_limits<int>::max(), -6};
  weld(points, indices);
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, 1, kNoPoint, -6}));
}

TEST(WeldPoints, NegativeEntriesStayAsTheyAre) {
  std::vector<KtPoint3> points = {{0, 0, 0}};
  std::vector<int> indices = {-1, -7, -9, std::numeric_limits<int>::min()};
  const std::vector<int> before = indices;
  weld(points, indices);
  EXPECT_EQ(indices, before);
}

TEST(WeldPoints, NoPointsLeaveNoneToName) {
  std::vector<KtPoint3> points;
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_TRUE(points.empty());
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, kNoPoint, -1}));
}

TEST(WeldPoints, ScratchOfALargerSetDoesNotShow) {
  WeldScratch scratch;
  std::vector<KtPoint3> many;
  std::vector<int> none;
  for (int i = 0; i < 1000; ++i) {
    many.emplace_back(i, 0, 0);
  }
  weldPoints(many, none, scratch);
  std::vector<KtPoint3> points = {{5, 0, 0}, {6, 0, 0}, {5, 0, 0}};
  std::vector<int> indices = {0, 1, 2, 3, -6};
  weldPoints(points, indices, scratch);
  EXPECT_EQ(points.size(), 2U);
  EXPECT_EQ(indices, (std::vector<int>{0, 1, 0, kNoPoint, -6}));
}
