// Sums of three terms, parenthesized once and for all: the same numbers with every compiler.
#pragma once

#include <array>
#include <cmath>

namespace dxf2d {

using Vector3 = std::array<double, 3>;

inline double dot(const Vector3& u, const Vector3& v) {
  return (u[0] * v[0] + u[1] * v[1]) + u[2] * v[2];
}

inline Vector3 cross(const Vector3& u, const Vector3& v) {
  return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

inline double length(const Vector3& v) { return std::sqrt(dot(v, v)); }

// A length that a vector can be divided by.
inline bool isUsableLength(double value) { return value > 0.0 && std::isfinite(value); }

}  // namespace dxf2d
