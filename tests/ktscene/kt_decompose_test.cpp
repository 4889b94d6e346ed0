#include "ktscene/kt_decompose.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

KtMatrix randomMatrix(std::mt19937& random) {
  std::uniform_real_distribution<double> number(-3.0, 3.0);
  double m[16] = {};
  for (const int row : {0, 4, 8, 12}) {
    for (int i = 0; i < 3; ++i) {
      m[row + i] = number(random);
    }
  }
  m[15] = 1.0;
  KtMatrix matrix;
  matrix.Init(m);
  return matrix;
}

void expectNear(const KtMatrix& a, const KtMatrix& b) {
  for (int i = 0; i < 16; ++i) {
    EXPECT_NEAR(a.Data()[i], b.Data()[i], 1e-12) << i;
  }
}

}  // namespace

TEST(KtDecompose, PartsMakeTheMatrixAgain) {
  std::mt19937 random(1);
  for (int i = 0; i < 1000; ++i) {
    const KtMatrix matrix = randomMatrix(random);
    const KtDecomposition parts = KtDecompose(matrix);
    KtMatrix product = parts.placement;
    product.Mult(parts.residual);
    expectNear(product, matrix);
    double tiltX = 0.0;
    double tiltY = 0.0;
    double turn = 0.0;
    parts.placement.GetRotateKoef(&tiltX, &tiltY, &turn);
    EXPECT_EQ(tiltX, 0.0);
    EXPECT_EQ(tiltY, 0.0);
  }
}

TEST(KtDecompose, TurnedCopiesHaveOneResidual) {
  std::mt19937 random(2);
  const KtMatrix matrix = randomMatrix(random);
  KtMatrix turned;
  turned.SetTranslation(7.0, -2.0, 1.0);
  turned.Rotate(0.0, 0.0, 1.0, 2.0);
  turned.Mult(matrix);
  expectNear(KtDecompose(turned).residual, KtDecompose(matrix).residual);
}

TEST(KtDecompose, RightAnglesAreExact) {
  const double data[16] = {0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 5, 6, 7, 1};
  KtMatrix matrix;
  matrix.Init(data);
  const KtDecomposition parts = KtDecompose(matrix);
  const double placement[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
  const double residual[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(parts.placement.Data()[i], placement[i]) << i;
    EXPECT_EQ(parts.residual.Data()[i], residual[i]) << i;
  }
}
