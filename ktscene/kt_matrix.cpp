#include "ktscene/kt_matrix.h"

#include <cassert>
#include <cmath>
#include <numbers>
#include <optional>

#include "ktscene/vector3.h"

namespace {

using dxf2d::cross;
using dxf2d::dot;
using dxf2d::isUsableLength;
using dxf2d::length;
using dxf2d::Vector3;

// The rotation part: unit rows, right-handed.
using Rotation = std::array<Vector3, 3>;

std::optional<Rotation> rotationPart(const double* m) {
  Rotation rows{{{m[0], m[1], m[2]}, {m[4], m[5], m[6]}, {m[8], m[9], m[10]}}};
  for (Vector3& row : rows) {
    const double rowLength = length(row);
    if (!isUsableLength(rowLength)) {
      return std::nullopt;
    }
    for (double& element : row) {
      element /= rowLength;
    }
  }
  if (dot(cross(rows[0], rows[1]), rows[2]) < 0.0) {
    for (double& element : rows[2]) {
      element = -element;
    }
  }
  return rows;
}

// The axis of a half turn, which a symmetric rotation matrix gives up to its sign only.
Vector3 halfTurnAxis(const Rotation& rows) {
  std::size_t k = 0;
  for (std::size_t i = 1; i < 3; ++i) {
    if (rows[i][i] > rows[k][k]) {
      k = i;
    }
  }
  Vector3 axis;
  axis[k] = std::sqrt((rows[k][k] + 1.0) / 2.0);
  for (std::size_t j = 0; j < 3; ++j) {
    if (j != k) {
      axis[j] = (rows[k][j] + rows[j][k]) / (4.0 * axis[k]);
    }
  }
  return axis;
}

}  // namespace

void KtMatrix::Rotate(double axisX, double axisY, double axisZ, double angle) {
  const double axisLength = length({axisX, axisY, axisZ});
  if (!isUsableLength(axisLength)) {
    return;
  }
  const double x = axisX / axisLength;
  const double y = axisY / axisLength;
  const double z = axisZ / axisLength;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double k = 1.0 - c;
  // The diagonal is written so that a turn about a coordinate axis has exactly c and 1 in it.
  const double rows[16] = {c * (y * y + z * z) + x * x,
                           x * y * k + z * s,
                           x * z * k - y * s,
                           0.0,  //
                           x * y * k - z * s,
                           c * (z * z + x * x) + y * y,
                           y * z * k + x * s,
                           0.0,  //
                           x * z * k + y * s,
                           y * z * k - x * s,
                           c * (x * x + y * y) + z * z,
                           0.0,  //
                           0.0,
                           0.0,
                           0.0,
                           1.0};
  KtMatrix rotation;
  rotation.Init(rows);
  Mult(rotation);
}

void KtMatrix::GetRotateKoef(double* aboutX, double* aboutY, double* aboutZ) const {
  assert(aboutX != nullptr && aboutY != nullptr && aboutZ != nullptr);
  // Where x points along the z axis, turns about x and z are the same turn: about x is then 0.
  constexpr double kGimbalTolerance = 1e-12;
  *aboutX = *aboutY = *aboutZ = 0.0;
  const std::optional<Rotation> rotation = rotationPart(m_);
  if (!rotation) {
    return;
  }
  const auto& [x, y, z] = *rotation;
  const double h = std::sqrt(x[0] * x[0] + x[1] * x[1]);
  *aboutY = std::atan2(-x[2], h);
  if (h < kGimbalTolerance) {
    *aboutZ = std::atan2(-y[0], y[1]);
  } else {
    *aboutX = std::atan2(y[2], z[2]);
    *aboutZ = std::atan2(x[1], x[0]);
  }
}

void KtMatrix::GetRotation(double* axisX, double* axisY, double* axisZ, double* angle,
                           int /*order*/) const {
  assert(axisX != nullptr && axisY != nullptr && axisZ != nullptr && angle != nullptr);
  *axisX = *axisY = *axisZ = *angle = 0.0;
  const std::optional<Rotation> rotation = rotationPart(m_);
  if (!rotation) {
    return;
  }
  const auto& [x, y, z] = *rotation;
  const Vector3 v = {y[2] - z[1], z[0] - x[2], x[1] - y[0]};
  const double n = length(v);
  const double t = ((x[0] + y[1]) + z[2]) - 1.0;
  Vector3 axis;
  if (n > 0.0) {
    axis = {v[0] / n, v[1] / n, v[2] / n};
    *angle = std::atan2(n, t);
  } else if (t > 0.0) {
    return;
  } else {
    axis = halfTurnAxis(*rotation);
    *angle = std::numbers::pi;
  }
  *axisX = axis[0];
  *axisY = axis[1];
  *axisZ = axis[2];
}
