#include "app/model/affine.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {
namespace {

// About four units in the last place of single precision, in which models keep their transforms.
constexpr double kNoise = 2.5e-7;

}  // namespace

Affine compose(const Affine& first, const Affine& second) {
  Affine result;
  const std::array<double, 9>& m = second.linear;
  for (std::size_t row = 0; row < 3; ++row) {
    const double* r = &first.linear[3 * row];
    for (std::size_t column = 0; column < 3; ++column) {
      result.linear[3 * row + column] =
          (r[0] * m[column] + r[1] * m[3 + column]) + r[2] * m[6 + column];
    }
  }
  const std::array<double, 3>& t = first.shift;
  for (std::size_t column = 0; column < 3; ++column) {
    result.shift[column] =
        ((t[0] * m[column] + t[1] * m[3 + column]) + t[2] * m[6 + column]) + second.shift[column];
  }
  return result;
}

void dropNoise(Affine& map) {
  for (std::size_t row = 0; row < 3; ++row) {
    double* r = &map.linear[3 * row];
    const double limit = kNoise * std::max({std::abs(r[0]), std::abs(r[1]), std::abs(r[2])});
    for (std::size_t column = 0; column < 3; ++column) {
      // Also turns -0 into 0, which would show as "-0.000000" in drawings.
      if (std::abs(r[column]) <= limit) {
        r[column] = 0.0;
      }
    }
  }
}

bool isFinite(const Affine& map) {
  const auto finite = [](double value) { return std::isfinite(value); };
  return std::all_of(map.linear.begin(), map.linear.end(), finite) &&
         std::all_of(map.shift.begin(), map.shift.end(), finite);
}

double largestElement(const std::array<double, 9>& linear) {
  double largest = 0.0;
  for (const double value : linear) {
    largest = std::max(largest, std::abs(value));
  }
  return largest;
}

}  // namespace dxf2d
