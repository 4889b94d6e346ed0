#include "ktscene/kt_point3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using std::numbers::pi;

TEST(KtPoint3, StartsAtTheOrigin) { EXPECT_EQ(KtPoint3(), KtPoint3(0, 0, 0)); }

TEST(KtPoint3, Set2ChangesTheThirdCoordinateAlone) {
  KtPoint3 point(1, 2, 3);
  point.Set2(9);
  EXPECT_EQ(point, KtPoint3(1, 2, 9));
}

TEST(KtPoint3, EqualityIsExactAndTakesMinusZeroForZero) {
  EXPECT_EQ(KtPoint3(-0.0, 0.0, -0.0), KtPoint3(0.0, -0.0, 0.0));
  EXPECT_FALSE(KtPoint3(1, 2, 3) == KtPoint3(1, 2, std::nextafter(3.0, 4.0)));
  EXPECT_FALSE(KtPoint3(1, 2, 3) == KtPoint3(0, 2, 3));
  EXPECT_FALSE(KtPoint3(1, 2, 3) == KtPoint3(1, 0, 3));
}

TEST(KtPoint3, IsFiniteWhenEachCoordinateIs) {
  const double most = std::numeric_limits<double>::max();
  const double least = std::numeric_limits<double>::denorm_min();
  EXPECT_TRUE(isFinite(KtPoint3()));
  EXPECT_TRUE(isFinite(KtPoint3(most, -most, most)));
  EXPECT_TRUE(isFinite(KtPoint3(-0.0, least, -least)));
  for (const double odd :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(isFinite(KtPoint3(odd, 1, -1)));
    EXPECT_FALSE(isFinite(KtPoint3(1, odd, -1)));
    EXPECT_FALSE(isFinite(KtPoint3(1, -1, odd)));
    EXPECT_FALSE(isFinite(KtPoint3(odd, -odd, odd)));
  }
}

TEST(KtPoint3, MultAppliesRowsAndTranslation) {
  const double data[16] = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 100, 200, 300, 1};
  KtMatrix matrix;
  matrix.Init(data);
  KtPoint3 point(1, 10, 100);
  point.Mult(matrix);
  EXPECT_EQ(point, KtPoint3(1 + 40 + 700 + 100, 2 + 50 + 800 + 200, 3 + 60 + 900 + 300));
}

TEST(GetAngle, RightAngleIsHalfPi) {
  EXPECT_EQ(KtPoint3::GetAngle({2, 0, 0}, {0, 5, 0}, false), pi / 2);
}

TEST(GetAngle, OppositeDirectionsArePiApart) {
  EXPECT_EQ(KtPoint3::GetAngle({1, 0, 0}, {-3, 0, 0}, false), pi);
}

TEST(GetAngle, EqualDirectionsHaveNone) {
  EXPECT_EQ(KtPoint3::GetAngle({1, 2, 2}, {2, 4, 4}, false), 0.0);
}

TEST(GetAngle, ZeroVectorHasNone) {
  EXPECT_EQ(KtPoint3::GetAngle({0, -0.0, 0}, {1, 0, 0}, false), 0.0);
  EXPECT_EQ(KtPoint3::GetAngle({-1, 0, 0}, {0, 0, 0}, true), 0.0);
}

TEST(GetAngle, SignComesFromTheCrossProductsZ) {
  EXPECT_EQ(KtPoint3::GetAngle({1, 0, 0}, {0, 1, 0}, true), pi / 2);
  EXPECT_EQ(KtPoint3::GetAngle({0, 1, 0}, {1, 0, 0}, true), -pi / 2);
  EXPECT_EQ(KtPoint3::GetAngle({0, 1, 0}, {1, 0, 0}, false), pi / 2);
}

TEST(GetAngle, IsTheArcTangentOfCrossLengthAndDotProduct) {
  // (1,2,3) x (4,5,6) = (-3,6,-3), dot 32.
  EXPECT_EQ(KtPoint3::GetAngle({1, 2, 3}, {4, 5, 6}, false), std::atan2(std::sqrt(54.0), 32.0));
}
