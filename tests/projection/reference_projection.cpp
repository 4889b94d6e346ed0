#include "tests/projection/reference_projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace dxf2d::projection {
namespace {

using Real = long double;

using Vector = std::array<Real, 3>;

// Whether the triangle is nowhere near (x, y), which spares the exact look.
bool isFarFrom(const Scene& scene, std::size_t t, Real x, Real y, Real slack) {
  const auto& [a, b, c] = scene.triangles[t];
  const auto& points = scene.points;
  return x < std::min({points[a][0], points[b][0], points[c][0]}) - slack ||
         x > std::max({points[a][0], points[b][0], points[c][0]}) + slack ||
         y < std::min({points[a][1], points[b][1], points[c][1]}) - slack ||
         y > std::max({points[a][1], points[b][1], points[c][1]}) + slack;
}

Vector at(const Scene& scene, Index corner) {
  const Point& p = scene.points[corner];
  return {p[0], p[1], p[2]};
}

struct ReferenceTriangle {
  std::array<Vector, 3> corners;
  Real doubledArea;  // in plan, signed

  ReferenceTriangle(const Scene& scene, std::size_t t) {
    for (std::size_t i = 0; i < 3; ++i) {
      corners[i] = at(scene, scene.triangles[t][i]);
    }
    doubledArea = Cross(corners[0], corners[1], corners[2][0], corners[2][1]);
  }

  static Real Cross(const Vector& a, const Vector& b, Real x, Real y) {
    return (b[0] - a[0]) * (y - a[1]) - (b[1] - a[1]) * (x - a[0]);
  }

  // How far inside of the triangle's plan (x, y) lies; negative outside.
  Real Depth(Real x, Real y) const {
    const Real sign = doubledArea < 0 ? -1 : 1;
    Real least = std::numeric_limits<Real>::infinity();
    for (std::size_t i = 0; i < 3; ++i) {
      const Vector& a = corners[i];
      const Vector& b = corners[(i + 1) % 3];
      const Real length = std::hypot(b[0] - a[0], b[1] - a[1]);
      if (length == 0) {
        return -std::numeric_limits<Real>::infinity();
      }
      least = std::min(least, sign * Cross(a, b, x, y) / length);
    }
    return least;
  }

  Vector Normal() const {
    const auto& [a, b, c] = corners;
    const Vector u = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const Vector v = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
  }

  // Distance of a point from the plane, positive below it.
  Real Below(const Vector& p) const {
    const Vector n = Normal();
    const Real length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    const Real sign = n[2] < 0 ? -1 : 1;
    const Vector& a = corners[0];
    return -sign * ((p[0] - a[0]) * n[0] + (p[1] - a[1]) * n[1] + (p[2] - a[2]) * n[2]) / length;
  }
};

}  // namespace

Seen seenFrom(const Scene& scene, const Point& point, const PointSlack& slack) {
  Seen seen = Seen::kVisible;
  for (std::size_t t = 0; t < scene.triangles.size(); ++t) {
    if (isFarFrom(scene, t, point[0], point[1], slack.plan)) {
      continue;
    }
    const ReferenceTriangle triangle(scene, t);
    if (triangle.doubledArea == 0) {
      continue;
    }
    const Real depth = triangle.Depth(point[0], point[1]);
    const Real below = triangle.Below({point[0], point[1], point[2]});
    if (depth < -slack.plan || below < -slack.touch) {
      continue;
    }
    if (depth > slack.plan && below > slack.touch) {
      return Seen::kHidden;
    }
    if (below > slack.touching) {
      seen = Seen::kEither;
    }
  }
  return seen;
}

Seen coverAt(const Scene& scene, long double x, long double y, long double slack) {
  Seen seen = Seen::kHidden;
  for (std::size_t t = 0; t < scene.triangles.size(); ++t) {
    if (isFarFrom(scene, t, x, y, slack)) {
      continue;
    }
    const ReferenceTriangle triangle(scene, t);
    if (triangle.doubledArea == 0) {
      continue;
    }
    const Real depth = triangle.Depth(x, y);
    if (depth > slack) {
      return Seen::kVisible;
    }
    if (depth >= -slack) {
      seen = Seen::kEither;
    }
  }
  return seen;
}

}  // namespace dxf2d::projection
