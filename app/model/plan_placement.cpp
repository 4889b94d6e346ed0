#include "app/model/plan_placement.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {
namespace {

// Turns up to 0.001 rad are not written with an INSERT; the margin is for the reader's rounding.
constexpr double kLeastTurn = 0.00101;

// Relative to the largest element of a residual.
constexpr double kResidualTolerance = 1e-6;

// The direction in plan of the first axis whose image has a length there.
void findTurn(const std::array<double, 9>& linear, double& cosine, double& sine) {
  const double limit = kResidualTolerance * largestElement(linear);
  for (std::size_t row = 0; row < 3; ++row) {
    const double x = linear[3 * row];
    const double y = linear[3 * row + 1];
    const double length = std::hypot(x, y);
    if (!(length > limit)) {
      continue;
    }
    if (std::abs(std::atan2(y, x)) <= kLeastTurn) {
      return;
    }
    cosine = x / length;
    sine = y / length;
    return;
  }
}

}  // namespace

KtMatrix PlanPlacement::Matrix() const {
  const double data[16] = {cosine, sine, 0.0, 0.0, -sine + 0.0, cosine,   0.0,      0.0,
                           0.0,    0.0,  1.0, 0.0, shift[0],    shift[1], shift[2], 1.0};
  KtMatrix matrix;
  matrix.Init(data);
  return matrix;
}

SplitTransform splitTransform(const Affine& world) {
  SplitTransform split;
  split.placement.shift = world.shift;
  findTurn(world.linear, split.placement.cosine, split.placement.sine);
  const double cosine = split.placement.cosine;
  const double sine = split.placement.sine;
  Affine residual;
  for (std::size_t row = 0; row < 3; ++row) {
    const double x = world.linear[3 * row];
    const double y = world.linear[3 * row + 1];
    residual.linear[3 * row] = x * cosine + y * sine;
    residual.linear[3 * row + 1] = y * cosine - x * sine;
    residual.linear[3 * row + 2] = world.linear[3 * row + 2];
  }
  dropNoise(residual);
  split.residual = residual.linear;
  return split;
}

double residualTolerance(const std::array<double, 9>& residual) {
  return kResidualTolerance * largestElement(residual);
}

bool residualsAgree(const std::array<double, 9>& a, const std::array<double, 9>& b) {
  const double tolerance = std::max(residualTolerance(a), residualTolerance(b));
  for (std::size_t i = 0; i < 9; ++i) {
    if (!(std::abs(a[i] - b[i]) <= tolerance)) {
      return false;
    }
  }
  return true;
}

}  // namespace dxf2d
