#include "ktscene/kt_decompose.h"

#include <algorithm>
#include <cmath>

namespace {

// Turns up to 0.001 radians are not written with a placement; the margin is for rounding.
constexpr double kLeastTurn = 0.00101;

// Relative to the largest element.
constexpr double kTolerance = 1e-6;

// The direction in plan of the first axis whose image has a length there.
void findTurn(const double* m, double& cosine, double& sine) {
  double largest = 0.0;
  for (const int row : {0, 4, 8}) {
    for (int i = 0; i < 3; ++i) {
      largest = std::max(largest, std::abs(m[row + i]));
    }
  }
  for (const int row : {0, 4, 8}) {
    const double length = std::hypot(m[row], m[row + 1]);
    if (!(length > kTolerance * largest)) {
      continue;
    }
    if (std::abs(std::atan2(m[row + 1], m[row])) > kLeastTurn) {
      cosine = m[row] / length;
      sine = m[row + 1] / length;
    }
    return;
  }
}

}  // namespace

KtDecomposition KtDecompose(const KtMatrix& matrix) {
  const double* m = matrix.Data();
  double cosine = 1.0;
  double sine = 0.0;
  findTurn(m, cosine, sine);
  const double placement[16] = {cosine, sine, 0.0, 0.0, -sine + 0.0, cosine, 0.0,   0.0,
                                0.0,    0.0,  1.0, 0.0, m[12],       m[13],  m[14], 1.0};
  double residual[16] = {};
  for (const int row : {0, 4, 8}) {
    residual[row] = m[row] * cosine + m[row + 1] * sine;
    residual[row + 1] = m[row + 1] * cosine - m[row] * sine;
    residual[row + 2] = m[row + 2];
  }
  residual[15] = 1.0;
  KtDecomposition result;
  result.placement.Init(placement);
  result.residual.Init(residual);
  return result;
}
