#include <algorithm>
#include <cmath>
#include <optional>

#include "ktscene/kt_v.h"

namespace {

std::optional<KtMatrix> inverse(const KtMatrix& matrix) {
  const double* m = matrix.Data();
  const double numerators[9] = {
      m[5] * m[10] - m[6] * m[9], m[2] * m[9] - m[1] * m[10], m[1] * m[6] - m[2] * m[5],
      m[6] * m[8] - m[4] * m[10], m[0] * m[10] - m[2] * m[8], m[2] * m[4] - m[0] * m[6],
      m[4] * m[9] - m[5] * m[8],  m[1] * m[8] - m[0] * m[9],  m[0] * m[5] - m[1] * m[4]};
  const double determinant = (m[0] * numerators[0] + m[1] * numerators[3]) + m[2] * numerators[6];
  if (determinant == 0.0 || !std::isfinite(determinant)) {
    return std::nullopt;
  }

  double i[9];
  std::transform(numerators, numerators + 9, i, [=](double n) { return n / determinant; });
  double data[16] = {i[0], i[1], i[2], 0.0, i[3], i[4], i[5], 0.0,
                     i[6], i[7], i[8], 0.0, 0.0,  0.0,  0.0,  1.0};
  for (int j = 0; j < 3; ++j) {
    data[12 + j] = -((m[12] * i[j] + m[13] * i[3 + j]) + m[14] * i[6 + j]);
  }
  KtMatrix result;
  result.Init(data);
  return result;
}

}  // namespace

void KtV_intern::CalculateNewRelativeMatrix(const KtMatrix& a, const KtMatrix& b,
                                            KtMatrix& result) {
  // A product with the computed inverse would be the identity up to rounding only.
  if (std::equal(a.Data(), a.Data() + 16, b.Data())) {
    result.Identity();
    return;
  }
  std::optional<KtMatrix> relative = inverse(b);
  if (!relative) {
    result = a;
    return;
  }
  relative->Mult(a);
  result = *relative;
}
