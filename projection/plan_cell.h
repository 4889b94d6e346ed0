// A rectangle of the plan with what lies in it.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "projection/scene.h"

namespace dxf2d::projection {

// A rectangle of the plan, which the cells of a grid share out: its left and lower sides belong to
// it.
struct Rectangle {
  double x0;
  double y0;
  double x1;
  double y1;

  double CenterX() const { return x0 + (x1 - x0) / 2; }
  double CenterY() const { return y0 + (y1 - y0) / 2; }
  bool Overlaps(const Rectangle& other) const {
    return x0 < other.x1 && other.x0 < x1 && y0 < other.y1 && other.y0 < y1;
  }
};

// A triangle as its shadow in the plan and its height above it. Plan coordinates are relative to
// the middle of the scene.
struct PlanTriangle {
  // Signed distance of (x, y) from side i: a x + b y + c, positive inside.
  struct Side {
    double a;
    double b;
    double c;
    double DistanceOf(double x, double y) const { return a * x + b * y + c; }
  };
  std::array<Side, 3> sides;
  // Height at (x, y): zx x + zy y + z0.
  double zx;
  double zy;
  double z0;
  // Heights of the lowest and the highest corner.
  double bottom;
  double top;
  // Difference of heights that is the triangle's tolerance (touchOf) measured square to it.
  double touch;
  Rectangle box;
  Index triangle;
  std::array<Index, 3> corners;

  double HeightAt(double x, double y) const { return zx * x + zy * y + z0; }
  // The least of the signed distances from the sides.
  double Depth(double x, double y) const {
    return std::min(
        {sides[0].DistanceOf(x, y), sides[1].DistanceOf(x, y), sides[2].DistanceOf(x, y)});
  }
  // Whether (x, y) lies inside or within about `slack` of the triangle. Beyond a sharp corner,
  // points far away are that near to both sides' lines; the box tells.
  bool Covers(double x, double y, double slack) const {
    const double depth = Depth(x, y);
    return depth >= 0 || (depth >= -slack && x >= box.x0 - slack && x <= box.x1 + slack &&
                          y >= box.y0 - slack && y <= box.y1 + slack);
  }
};

// A candidate edge in the plan: the point at t is (x + t dx, y + t dy) at height z + t dz.
struct PlanSegment {
  double x;
  double y;
  double z;
  double dx;
  double dy;
  double dz;
  double length;  // in plan, above 0
  // The direction, of length 1.
  double ux;
  double uy;
  Index edge;

  PlanSegment(double x_, double y_, double z_, double dx_, double dy_, double dz_, Index edge_)
      : x(x_),
        y(y_),
        z(z_),
        dx(dx_),
        dy(dy_),
        dz(dz_),
        length(std::sqrt(dx_ * dx_ + dy_ * dy_)),
        ux(dx_ / length),
        uy(dy_ / length),
        edge(edge_) {}

  double XAt(double t) const { return x + t * dx; }
  double YAt(double t) const { return y + t * dy; }
  double ZAt(double t) const { return z + t * dz; }
  // Distance of a point from the segment's line, positive on its left.
  double DistanceOf(double px, double py) const { return ux * (py - y) - uy * (px - x); }
  // Where on the segment the point nearest to (px, py) lies.
  double Project(double px, double py) const { return ((px - x) * ux + (py - y) * uy) / length; }
};

struct Interval {
  double from;
  double to;
  bool IsEmpty() const { return !(from < to); }
};

// The part of a segment that a cell sees: `own` belongs to this cell alone (and may be empty),
// `reach` is what lies within the tolerance of the cell, where the segment may cut others.
struct SegmentPart {
  Index segment;
  Interval own;
  Interval reach;
};

// Narrows `interval` to where the coordinate start + t step lies between `low` and `high`. Cells
// that share a side get exactly the same t for it; a segment along the side falls to the cell
// whose lower side it is.
inline void clipToSlab(double start, double step, double low, double high, Interval& interval) {
  if (step == 0) {
    if (!(low <= start && start < high)) {
      interval.to = interval.from - 1;
    }
    return;
  }
  const double atLow = (low - start) / step;
  const double atHigh = (high - start) / step;
  interval.from = std::max(interval.from, std::min(atLow, atHigh));
  interval.to = std::min(interval.to, std::max(atLow, atHigh));
}

// What a cell holds, as the visitors of leaf cells receive it.
struct PlanCell {
  Rectangle rectangle;
  std::span<const PlanTriangle> triangles;  // of the whole block
  std::span<const Index> triangleNumbers;   // of this cell, in `triangles`, the highest top first
  std::span<const PlanSegment> segments;    // of the whole block
  std::span<const SegmentPart> parts;       // of this cell
  // What to add to plan coordinates for those of the scene.
  double middleX;
  double middleY;

  Point PointAt(const PlanSegment& segment, double t) const {
    return {segment.XAt(t) + middleX, segment.YAt(t) + middleY, segment.ZAt(t)};
  }
};

}  // namespace dxf2d::projection
