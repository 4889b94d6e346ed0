// Vectors, with sums bracketed once and for all: the same numbers with every compiler.
#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

using Vector = Point;

inline Vector difference(const Point& a, const Point& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline double dot(const Vector& u, const Vector& v) {
  return (u[0] * v[0] + u[1] * v[1]) + u[2] * v[2];
}

inline Vector cross(const Vector& u, const Vector& v) {
  return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

inline double length(const Vector& v) { return std::sqrt(dot(v, v)); }

// Whether a point is finite, and so near the origin that squares of areas between such points are.
inline bool isUsablePoint(const Point& point) {
  constexpr double kGreatest = 1e75;
  return std::fabs(point[0]) <= kGreatest && std::fabs(point[1]) <= kGreatest &&
         std::fabs(point[2]) <= kGreatest;
}

// Twice the area of a polygon, as a vector along its normal, towards the side from which it runs
// counter-clockwise. Summed up fan by fan as the plug-in does, to the last bit, so that both see
// the same silhouettes.
inline Vector doubledArea(const std::vector<Point>& points, std::span<const Index> corners) {
  const Point& origin = points[corners[0]];
  Vector before = difference(points[corners[1]], origin);
  Vector sum = {0.0, 0.0, 0.0};
  for (std::size_t i = 2; i < corners.size(); ++i) {
    const Vector after = difference(points[corners[i]], origin);
    const Vector part = cross(before, after);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      sum[axis] += part[axis];
    }
    before = after;
  }
  return sum;
}
inline Vector doubledArea(const PolygonMesh& mesh, std::size_t p) {
  return doubledArea(mesh.points, mesh.Polygon(p));
}

// Which side of a polygon with this normal, of any length, the viewer sees: 1 its front, -1 its
// back, 0 neither.
inline int seenSide(const Vector& normal) {
  // What single precision leaves of normals that are meant to be edge-on.
  constexpr double kNoise = 1e-6;
  const double limit = kNoise * length(normal);
  return (normal[2] > limit ? 1 : 0) - (normal[2] < -limit ? 1 : 0);
}

}  // namespace dxf2d::mesh
