#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ktscene/kt_v.h"

namespace {

KtMatrix matrixOf(std::vector<double> data) {
  KtMatrix matrix;
  matrix.Init(data.data());
  return matrix;
}

std::vector<double> dataOf(const KtMatrix& matrix) { return {matrix.Data(), matrix.Data() + 16}; }

std::vector<double> relative(const KtMatrix& a, const KtMatrix& b) {
  KtMatrix result;
  KtV_intern::CalculateNewRelativeMatrix(a, b, result);
  return dataOf(result);
}

const std::vector<double> kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

}  // namespace

TEST(CalculateNewRelativeMatrix, EqualMatricesGiveExactlyTheIdentity) {
  KtMatrix matrix;
  matrix.Rotate(1, 2, 3, 0.777);
  matrix.SetTranslation(0.1, 0.2, 0.3);
  EXPECT_EQ(relative(matrix, matrix), kIdentity);
}

TEST(CalculateNewRelativeMatrix, EqualMatricesWithoutInverseGiveTheIdentityToo) {
  const KtMatrix flat = matrixOf({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 5, 6, 7, 1});
  EXPECT_EQ(relative(flat, flat), kIdentity);
}

TEST(CalculateNewRelativeMatrix, IdentityBLeavesA) {
  const KtMatrix a = matrixOf({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 11, 12, 13, 1});
  EXPECT_EQ(relative(a, KtMatrix()), dataOf(a));
}

TEST(CalculateNewRelativeMatrix, TranslationsSubtract) {
  KtMatrix a;
  a.SetTranslation(10, 20, 30);
  KtMatrix b;
  b.SetTranslation(1, 2, 3);
  EXPECT_EQ(relative(a, b),
            (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 9, 18, 27, 1}));
}

TEST(CalculateNewRelativeMatrix, AppliesTheInverseOfBAfterA) {
  // By hand: numerators -6 12 8 / 4 -6 -4 / -1 2 1, determinant 1*-6 + 2*4 + 0*-1 = 2.
  const KtMatrix b = matrixOf({1, 2, 0, 0, 0, 1, 4, 0, 1, 0, -6, 0, 1, 2, 3, 1});
  const KtMatrix a = matrixOf({2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
  EXPECT_EQ(relative(a, b),
            (std::vector<double>{
                -6, 12, 8, 0, 2, -3, -2, 0, -0.5, 1, 0.5, 0, -((1 * -3.0 + 2 * 2.0) + 3 * -0.5),
                -((1 * 6.0 + 2 * -3.0) + 3 * 1.0), -((1 * 4.0 + 2 * -2.0) + 3 * 0.5), 1}));
}

TEST(CalculateNewRelativeMatrix, UndoesBAfterAProduct) {
  KtMatrix b;
  b.Rotate(0, 0, 1, 0.3);
  b.SetTranslation(4, 5, 6);
  KtMatrix local;
  local.Rotate(1, 0, 0, 0.2);
  local.SetTranslation(1, 2, 3);
  KtMatrix world = b;
  world.Mult(local);
  const std::vector<double> result = relative(world, b);
  for (std::size_t i = 0; i < 16; ++i) {
    EXPECT_NEAR(result[i], local.Data()[i], 1e-14) << i;
  }
}

TEST(CalculateNewRelativeMatrix, BWithoutInverseGivesA) {
  KtMatrix a;
  a.SetTranslation(1, 2, 3);
  EXPECT_EQ(relative(a, matrixOf({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 5, 6, 7, 1})), dataOf(a));
  EXPECT_EQ(relative(a, matrixOf({1e200, 0, 0, 0, 0, 1e200, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1})),
            dataOf(a));
}

TEST(CalculateNewRelativeMatrix, SmallDeterminantStillHasAnInverse) {
  const KtMatrix small =
      matrixOf({0x1p-20, 0, 0, 0, 0, 0x1p-20, 0, 0, 0, 0, 0x1p-20, 0, 0, 0, 0, 1});
  const std::vector<double> result = relative(KtMatrix(), small);
  EXPECT_EQ(result[0], 0x1p20);
  EXPECT_EQ(result[5], 0x1p20);
  EXPECT_EQ(result[10], 0x1p20);
}

TEST(CalculateNewRelativeMatrix, ResultMayBeOneOfTheInputs) {
  KtMatrix a;
  a.SetTranslation(10, 20, 30);
  KtMatrix b;
  b.SetTranslation(1, 2, 3);
  KtV_intern::CalculateNewRelativeMatrix(a, b, b);
  EXPECT_EQ(dataOf(b), (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 9, 18, 27, 1}));
}
