#include "projection/segment_cuts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace dxf2d::projection {

void appendCrossings(const PlanSegment& segment, const PlanSegment& other, double plan,
                     double touch, std::vector<double>& cuts) {
  const double endX = other.x + other.dx;
  const double endY = other.y + other.dy;
  const double atStart = segment.DistanceOf(other.x, other.y);
  const double atEnd = segment.DistanceOf(endX, endY);
  if ((atStart > plan && atEnd > plan) || (atStart < -plan && atEnd < -plan)) {
    return;
  }
  const auto add = [&](double t, double height) {
    if (height >= segment.ZAt(t) - touch) {
      cuts.push_back(t);
    }
  };
  const bool startTouches = std::abs(atStart) <= plan;
  const bool endTouches = std::abs(atEnd) <= plan;
  if (startTouches) {
    add(segment.Project(other.x, other.y), other.z);
  }
  if (endTouches) {
    add(segment.Project(endX, endY), other.z + other.dz);
  }
  if (startTouches || endTouches) {
    return;
  }
  const double share = atStart / (atStart - atEnd);
  // Within the plan tolerance of the segment's ends a cut would be trimmed anyway.
  add(segment.Project(other.XAt(share), other.YAt(share)), other.ZAt(share));
}

void appendNearness(const PlanSegment& segment, const PlanSegment& other, double plan,
                    std::vector<double>& cuts) {
  constexpr double kLargestSine = 0.02;
  const double sine = segment.ux * other.uy - segment.uy * other.ux;
  if (sine == 0 || std::abs(sine) > kLargestSine) {
    return;
  }
  const double atStart = other.DistanceOf(segment.x, segment.y);
  // By how much the distance changes from the start to the end.
  const double change = -sine * segment.length;
  // The crossing too, since appendCrossings does not look for it where an end touches: both
  // segments have to be cut at the same places.
  for (const double distance : {-plan, 0.0, plan}) {
    const double t = (distance - atStart) / change;
    const double share = other.Project(segment.XAt(t), segment.YAt(t));
    if (share > 0 && share < 1) {
      cuts.push_back(t);
    }
  }
}

Rectangle boxAround(const PlanSegment& segment, const Interval& range, double slack) {
  const auto [x0, x1] = std::minmax({segment.XAt(range.from), segment.XAt(range.to)});
  const auto [y0, y1] = std::minmax({segment.YAt(range.from), segment.YAt(range.to)});
  return {x0 - slack, y0 - slack, x1 + slack, y1 + slack};
}

namespace {

// The part of `range` in which the triangle covers the segment in plan, within `plan`.
Interval overlapOf(const PlanSegment& segment, Interval range, const PlanTriangle& triangle,
                   double plan) {
  const Rectangle& box = triangle.box;
  clipToSlab(segment.x, segment.dx, box.x0 - plan, box.x1 + plan, range);
  clipToSlab(segment.y, segment.dy, box.y0 - plan, box.y1 + plan, range);
  for (const PlanTriangle::Side& side : triangle.sides) {
    const double atStart = side.DistanceOf(segment.x, segment.y) + plan;
    const double change = side.a * segment.dx + side.b * segment.dy;
    if (change > 0) {
      range.from = std::max(range.from, -atStart / change);
    } else if (change < 0) {
      range.to = std::min(range.to, -atStart / change);
    } else if (atStart < 0) {
      return {0, 0};
    }
  }
  return range;
}

}  // namespace

void appendPiercing(const PlanSegment& segment, const Interval& range, const PlanTriangle& triangle,
                    double plan, double mostTouch, std::vector<double>& cuts) {
  const auto above = [&](double t) {
    return triangle.HeightAt(segment.XAt(t), segment.YAt(t)) - segment.ZAt(t);
  };
  // In the plane but for rounding, or above; or too far below it for a neighbor to be touched.
  const auto isClear = [&](double atFrom, double atTo) {
    return std::max(atFrom, atTo) <= plan || std::min(atFrom, atTo) > mostTouch;
  };
  if (isClear(above(range.from), above(range.to))) {
    return;
  }
  const Interval overlap = overlapOf(segment, range, triangle, plan);
  if (overlap.IsEmpty()) {
    return;
  }
  const double atFrom = above(overlap.from);
  const double atTo = above(overlap.to);
  if (isClear(atFrom, atTo)) {
    return;
  }
  if (std::min(atFrom, atTo) < 0) {
    cuts.push_back(overlap.from + (overlap.to - overlap.from) * (atFrom / (atFrom - atTo)));
  }
  if (std::max(atFrom, atTo) > triangle.touch) {
    for (const auto& [t, height] : {std::pair(overlap.from, atFrom), std::pair(overlap.to, atTo)}) {
      if (height > 0 && height <= mostTouch) {
        cuts.push_back(t);
      }
    }
  }
}

void trimCuts(const PlanSegment& segment, const Interval& range, double plan,
              std::vector<double>& cuts) {
  std::ranges::sort(cuts);
  const double least = plan / segment.length;
  double last = range.from;
  std::erase_if(cuts, [&](double t) {
    if (!(t - last > least && range.to - t > least)) {
      return true;
    }
    last = t;
    return false;
  });
  cuts.insert(cuts.begin(), range.from);
  cuts.push_back(range.to);
}

}  // namespace dxf2d::projection
