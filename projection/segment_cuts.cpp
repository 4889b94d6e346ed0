#include "projection/segment_cuts.h"

#include <algorithm>
#include <cmath>

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

void appendPiercing(const PlanSegment& segment, const Interval& range, const PlanTriangle& triangle,
                    double plan, std::vector<double>& cuts) {
  const auto above = [&](double t) {
    return triangle.HeightAt(segment.XAt(t), segment.YAt(t)) - segment.ZAt(t);
  };
  const double atStart = above(range.from);
  const double atEnd = above(range.to);
  if (!((atStart > 0 && atEnd < 0) || (atStart < 0 && atEnd > 0))) {
    return;
  }
  const double t = range.from + (range.to - range.from) * (atStart / (atStart - atEnd));
  if (triangle.Depth(segment.XAt(t), segment.YAt(t)) >= -plan) {
    cuts.push_back(t);
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
