#include "projection/plan_triangle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace dxf2d::projection {

double touchOf(const Scene& scene, std::size_t t, double touch) {
  return std::max(touch, 2 * scene.DeviationOf(scene.parts[t]));
}

PlanTriangle makePlanTriangle(const Scene& scene, Index t, double middleX, double middleY,
                              double touch) {
  auto corners = scene.triangles[t];
  // One order for all triangles at the same place, so that they become equal in every bit.
  std::ranges::sort(corners, {}, [&](Index corner) { return scene.points[corner]; });
  std::array<Point, 3> p;
  for (std::size_t i = 0; i < 3; ++i) {
    const Point& point = scene.points[corners[i]];
    p[i] = {point[0] - middleX, point[1] - middleY, point[2]};
  }
  double area =
      (p[1][0] - p[0][0]) * (p[2][1] - p[0][1]) - (p[1][1] - p[0][1]) * (p[2][0] - p[0][0]);
  if (area < 0) {
    std::swap(p[1], p[2]);
    area = -area;
  }
  PlanTriangle triangle;
  for (std::size_t i = 0; i < 3; ++i) {
    const Point& q = p[(i + 1) % 3];
    const double dx = q[0] - p[i][0];
    const double dy = q[1] - p[i][1];
    const double length = std::sqrt(dx * dx + dy * dy);
    const double a = -dy / length;
    const double b = dx / length;
    triangle.sides[i] = {a, b, -(a * p[i][0] + b * p[i][1])};
  }
  const Point u = {p[1][0] - p[0][0], p[1][1] - p[0][1], p[1][2] - p[0][2]};
  const Point v = {p[2][0] - p[0][0], p[2][1] - p[0][1], p[2][2] - p[0][2]};
  triangle.zx = (u[2] * v[1] - v[2] * u[1]) / area;
  triangle.zy = (u[0] * v[2] - v[0] * u[2]) / area;
  triangle.z0 = p[0][2] - (triangle.zx * p[0][0] + triangle.zy * p[0][1]);
  triangle.bottom = std::min({p[0][2], p[1][2], p[2][2]});
  triangle.top = std::max({p[0][2], p[1][2], p[2][2]});
  triangle.touch = touchOf(scene, t, touch) *
                   std::sqrt(1 + triangle.zx * triangle.zx + triangle.zy * triangle.zy);
  triangle.box = {std::min({p[0][0], p[1][0], p[2][0]}), std::min({p[0][1], p[1][1], p[2][1]}),
                  std::max({p[0][0], p[1][0], p[2][0]}), std::max({p[0][1], p[1][1], p[2][1]})};
  triangle.triangle = t;
  triangle.corners = corners;
  return triangle;
}

bool standsBefore(const PlanTriangle& a, const PlanTriangle& b) {
  if (a.top != b.top) {
    return a.top > b.top;
  }
  const auto key = [](const PlanTriangle& t) {
    return std::array{t.bottom, t.z0,         t.zx,         t.zy,         t.box.x0,    t.box.y0,
                      t.box.x1, t.sides[0].a, t.sides[0].c, t.sides[1].a, t.sides[1].c};
  };
  const auto keyA = key(a);
  const auto keyB = key(b);
  return keyA != keyB ? keyA < keyB : a.triangle < b.triangle;
}

bool areTwins(const PlanTriangle& a, const PlanTriangle& b) {
  const auto isSame = [](const PlanTriangle::Side& s, const PlanTriangle::Side& r) {
    return s.a == r.a && s.b == r.b && s.c == r.c;
  };
  return a.top == b.top && a.bottom == b.bottom && a.zx == b.zx && a.zy == b.zy && a.z0 == b.z0 &&
         isSame(a.sides[0], b.sides[0]) && isSame(a.sides[1], b.sides[1]) &&
         isSame(a.sides[2], b.sides[2]);
}

Overlap overlapOf(const PlanTriangle& triangle, const Rectangle& rectangle, double slack) {
  const double x = rectangle.CenterX();
  const double y = rectangle.CenterY();
  const double halfWidth = rectangle.x1 - x;
  const double halfHeight = rectangle.y1 - y;
  Overlap overlap = Overlap::kCovers;
  for (const PlanTriangle::Side& side : triangle.sides) {
    const double distance = side.DistanceOf(x, y);
    const double reach = std::abs(side.a) * halfWidth + std::abs(side.b) * halfHeight;
    if (distance + reach < -slack) {
      return Overlap::kNone;
    }
    if (distance - reach <= slack) {
      overlap = Overlap::kSome;
    }
  }
  return overlap;
}

Interval heightsOver(const PlanTriangle& triangle, const Rectangle& rectangle) {
  const double x = rectangle.CenterX();
  const double y = rectangle.CenterY();
  const double height = triangle.HeightAt(x, y);
  const double reach =
      std::abs(triangle.zx) * (rectangle.x1 - x) + std::abs(triangle.zy) * (rectangle.y1 - y);
  return {std::max(triangle.bottom, height - reach), std::min(triangle.top, height + reach)};
}

}  // namespace dxf2d::projection
