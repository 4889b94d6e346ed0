#include "app/model/dashes.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {
namespace {

using PlanPoint = std::array<double, 2>;

constexpr double kGapShare = 0.5;

double distance(const PlanPoint& a, const PlanPoint& b) {
  return std::hypot(b[0] - a[0], b[1] - a[1]);
}

double lengthOf(std::span<const PlanPoint> polyline) {
  double length = 0.0;
  for (std::size_t i = 0; i + 1 < polyline.size(); ++i) {
    length += distance(polyline[i], polyline[i + 1]);
  }
  return length;
}

// Walks along a polyline.
class Walk {
 public:
  explicit Walk(std::span<const PlanPoint> polyline) : polyline_(polyline) {}

  // Goes on to `position` along the polyline, not below the last one. Appends the corners that are
  // passed to `passed`, if that is given.
  PlanPoint GoTo(double position, PlanPoints* passed) {
    while (segment_ + 2 < polyline_.size() && position >= start_ + SegmentLength()) {
      start_ += SegmentLength();
      ++segment_;
      if (passed != nullptr) {
        passed->push_back(polyline_[segment_]);
      }
    }
    const PlanPoint& a = polyline_[segment_];
    const PlanPoint& b = polyline_[segment_ + 1];
    const double length = SegmentLength();
    const double t = length > 0.0 ? std::min((position - start_) / length, 1.0) : 0.0;
    return t < 1.0 ? PlanPoint{a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])} : b;
  }

 private:
  double SegmentLength() const { return distance(polyline_[segment_], polyline_[segment_ + 1]); }

  std::span<const PlanPoint> polyline_;
  std::size_t segment_ = 0;
  // Position of the segment's first point.
  double start_ = 0.0;
};

}  // namespace

double defaultDashLength(const PlanExtent& extent) {
  constexpr double kShareOfPlan = 0.01;
  return kShareOfPlan * std::max(extent.maxX - extent.minX, extent.maxY - extent.minY);
}

double countDashes(std::span<const PlanPoint> polyline, double dashLength) {
  const double gap = kGapShare * dashLength;
  return std::max(1.0, std::floor((lengthOf(polyline) + gap) / (dashLength + gap)));
}

std::vector<PlanPoints> dashesOf(std::span<const PlanPoint> polyline, double dashLength) {
  const double count = countDashes(polyline, dashLength);
  if (count < 2.0) {
    return {PlanPoints(polyline.begin(), polyline.end())};
  }
  const double length = lengthOf(polyline);
  const double period = (length - dashLength) / (count - 1.0);
  std::vector<PlanPoints> dashes(static_cast<std::size_t>(count));
  Walk walk(polyline);
  for (std::size_t i = 0; i < dashes.size(); ++i) {
    const double begin = static_cast<double>(i) * period;
    dashes[i].push_back(walk.GoTo(begin, nullptr));
    const PlanPoint end = walk.GoTo(std::min(begin + dashLength, length), &dashes[i]);
    // A dash may end at a corner.
    if (dashes[i].back() != end || dashes[i].size() == 1) {
      dashes[i].push_back(end);
    }
  }
  return dashes;
}

}  // namespace dxf2d
