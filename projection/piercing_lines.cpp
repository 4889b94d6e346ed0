#include "projection/piercing_lines.h"

#include <algorithm>
#include <cmath>

#include "projection/plan_triangle.h"

namespace dxf2d::projection {

// The planes meet where the difference of heights is 0; of that line the rectangle and the six
// sides leave a stretch.
std::optional<PlanSegment> PiercingLines::LineOf(const PlanTriangle& a, const PlanTriangle& b,
                                                 const Rectangle& rectangle) const {
  const double gradientX = a.zx - b.zx;
  const double gradientY = a.zy - b.zy;
  const double gradient = std::sqrt(gradientX * gradientX + gradientY * gradientY);
  const double nx = gradientX / gradient;
  const double ny = gradientY / gradient;
  const double centerX = rectangle.CenterX();
  const double centerY = rectangle.CenterY();
  const double offset = (gradientX * centerX + gradientY * centerY + (a.z0 - b.z0)) / gradient;
  const double x = centerX - offset * nx;
  const double y = centerY - offset * ny;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  Interval stretch{-kInfinity, kInfinity};
  clipToSlab(x, -ny, rectangle.x0, rectangle.x1, stretch);
  clipToSlab(y, nx, rectangle.y0, rectangle.y1, stretch);
  for (const PlanTriangle* triangle : {&a, &b}) {
    for (const PlanTriangle::Side& side : triangle->sides) {
      const double distance = side.DistanceOf(x, y);
      const double rate = side.b * nx - side.a * ny;
      if (rate > 0) {
        stretch.from = std::max(stretch.from, -distance / rate);
      } else if (rate < 0) {
        stretch.to = std::min(stretch.to, -distance / rate);
      } else if (distance < 0) {
        return std::nullopt;
      }
      if (!(stretch.to - stretch.from > tolerances_.plan)) {
        return std::nullopt;
      }
    }
  }
  const double length = stretch.to - stretch.from;
  const double startX = x - stretch.from * ny;
  const double startY = y + stretch.from * nx;
  const double middleX = startX - length / 2 * ny;
  const double middleY = startY + length / 2 * nx;
  if (!(std::min(a.Depth(middleX, middleY), b.Depth(middleX, middleY)) > tolerances_.plan) ||
      !Straddles(a, b) || !Straddles(b, a)) {
    return std::nullopt;
  }
  // Heights are more exact on the flatter triangle.
  const auto steepness = [](const PlanTriangle& t) { return t.zx * t.zx + t.zy * t.zy; };
  const PlanTriangle& flatter = steepness(a) < steepness(b) ? a : b;
  const double dx = -length * ny;
  const double dy = length * nx;
  return PlanSegment(startX, startY, flatter.HeightAt(startX, startY), dx, dy,
                     flatter.zx * dx + flatter.zy * dy, kNoEdge);
}

// Whether `a` has corners on both sides of the plane of `b`, off it by more than what counts as
// touching.
bool PiercingLines::Straddles(const PlanTriangle& a, const PlanTriangle& b) const {
  const auto& corners = scene_.triangles[b.triangle];
  const Point& origin = scene_.points[corners[0]];
  const auto from = [&](const Point& p) {
    return Point{p[0] - origin[0], p[1] - origin[1], p[2] - origin[2]};
  };
  const Point u = from(scene_.points[corners[1]]);
  const Point v = from(scene_.points[corners[2]]);
  const Point normal = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                        u[0] * v[1] - u[1] * v[0]};
  const double touch = std::max(touchOf(scene_, a.triangle, tolerances_.touch),
                                touchOf(scene_, b.triangle, tolerances_.touch));
  const double limit = touch * std::hypot(normal[0], normal[1], normal[2]);
  double lowest = 0;
  double highest = 0;
  for (const Index corner : scene_.triangles[a.triangle]) {
    const Point d = from(scene_.points[corner]);
    const double height = d[0] * normal[0] + d[1] * normal[1] + d[2] * normal[2];
    lowest = std::min(lowest, height);
    highest = std::max(highest, height);
  }
  return lowest < -limit && highest > limit;
}

}  // namespace dxf2d::projection
