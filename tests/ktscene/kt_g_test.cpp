#include "ktscene/kt_g.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

const std::vector<KtPoint3> kSquare = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
const KtPoint3 kUntouched(7, 8, 9);

KtPoint3 normalOf(const std::vector<KtPoint3>& points, const std::vector<int>& indices,
                  unsigned int first = 0, bool orientation = true) {
  KtPoint3 normal = kUntouched;
  EXPECT_TRUE(KtG::ComputeNormal(points, indices, first, orientation, normal));
  return normal;
}

void expectNone(const std::vector<KtPoint3>& points, const std::vector<int>& indices,
                unsigned int first = 0) {
  KtPoint3 normal = kUntouched;
  EXPECT_FALSE(KtG::ComputeNormal(points, indices, first, true, normal));
  EXPECT_EQ(normal, kUntouched);
}

}  // namespace

TEST(ComputeNormal, CounterClockwiseIsTheFront) {
  EXPECT_EQ(normalOf(kSquare, {0, 1, 2, 3, -7}), KtPoint3(0, 0, 1));
  EXPECT_EQ(normalOf(kSquare, {3, 2, 1, 0, -7}), KtPoint3(0, 0, -1));
}

TEST(ComputeNormal, OrientationFalseReversesIt) {
  const KtPoint3 normal = normalOf(kSquare, {0, 1, 2, 3, -7}, 0, false);
  EXPECT_EQ(normal, KtPoint3(0, 0, -1));
  EXPECT_TRUE(std::signbit(normal.Get0()));
}

TEST(ComputeNormal, StartsAtTheGivenPosition) {
  EXPECT_EQ(normalOf(kSquare, {0, 1, 2, -7, 2, 1, 0, -7}, 4), KtPoint3(0, 0, -1));
}

TEST(ComputeNormal, ListMayEndWithoutACode) {
  EXPECT_EQ(normalOf(kSquare, {0, 1, 2}), KtPoint3(0, 0, 1));
}

TEST(ComputeNormal, HasUnitLengthInAnyDirection) {
  const KtPoint3 normal = normalOf({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {0, 1, 2, -7});
  const double third = 1 / std::sqrt(3.0);
  EXPECT_EQ(normal, KtPoint3(third, third, third));
}

TEST(ComputeNormal, NotchCountsAgainstTheRest) {
  // An L seen from its first corner: one triangle of the fan is turned the other way.
  const std::vector<KtPoint3> corner = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0},
                                        {1, 1, 0}, {1, 4, 0}, {0, 4, 0}};
  EXPECT_EQ(normalOf(corner, {2, 3, 4, 5, 0, 1, -7}), KtPoint3(0, 0, 1));
}

TEST(ComputeNormal, FewerThanThreeEntriesHaveNone) {
  expectNone(kSquare, {0, 1, -7, 2, 3, -7});
  expectNone(kSquare, {-7});
  expectNone(kSquare, {});
  expectNone(kSquare, {0, 1, 2, -7}, 4);
  expectNone(kSquare, {0, 1, 2, -7}, 400);
}

TEST(ComputeNormal, IndexOutOfRangeHasNone) {
  expectNone(kSquare, {0, 1, 4, -7});
  expectNone(kSquare, {0, 1, 2, -5, -7});
  expectNone(kSquare, {0, 1, -1, 2});
  expectNone({}, {0, 1, 2, -7});
  expectNone(kSquare, {0, 1, std::numeric_limits<int>::min(), -7});
}

TEST(ComputeNormal, DegeneratePolygonHasNone) {
  expectNone({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {0, 1, 2, -7});
  expectNone(kSquare, {0, 0, 0, -7});
}

TEST(ComputeNormal, NonFiniteSumHasNone) {
  expectNone({{0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0}}, {0, 1, 2, -7});
  expectNone({{0, 0, 0}, {std::nan(""), 0, 0}, {0, 1, 0}}, {0, 1, 2, -7});
}
