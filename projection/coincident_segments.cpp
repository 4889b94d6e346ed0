#include "projection/coincident_segments.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

namespace dxf2d::projection {
namespace {

// In radians. Lines that differ by less in direction are parallel.
constexpr double kLeastAngle = 1e-6;

// What is drawn of each line, as intervals along it.
class LineCover {
 public:
  LineCover(const PlanPoint& origin, double weld) : origin_(origin), weld_(weld), lines_(weld) {}

  // Calls visit(begin, end) for what of the segment is not covered, as shares of it, then covers
  // it.
  template <class Visit>
  void Take(const GroupedSegment& segment, Visit visit) {
    const Place place = PlaceOf(segment);
    if (!(place.high - place.low > weld_)) {
      return;
    }
    if (place.line >= covers_.size()) {
      covers_.resize(place.line + 1);
    }
    std::map<double, double>& cover = covers_[place.line];
    double begin = place.low;
    auto next = FirstEndingBehind(cover, begin);
    double low = begin;
    double high = place.high;
    while (next != cover.end() && next->first <= place.high) {
      Report(place, begin, next->first, visit);
      begin = std::max(begin, next->second);
      low = std::min(low, next->first);
      high = std::max(high, next->second);
      next = cover.erase(next);
    }
    Report(place, begin, place.high, visit);
    cover.emplace(low, high);
  }

 private:
  struct Place {
    Index line;
    // Along the line.
    double low;
    double high;
    bool isForward;
  };

  Place PlaceOf(const GroupedSegment& segment) {
    const PlanPoint from = {segment.from[0] - origin_[0], segment.from[1] - origin_[1]};
    const PlanPoint to = {segment.to[0] - origin_[0], segment.to[1] - origin_[1]};
    double angle = std::atan2(to[1] - from[1], to[0] - from[0]);
    // One of the two directions, from -kLeastAngle / 2 to nearly a half turn.
    if (angle < -kLeastAngle / 2) {
      angle += std::numbers::pi;
    }
    if (angle > std::numbers::pi - kLeastAngle / 2) {
      angle -= std::numbers::pi;
    }
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const double offset = cosine * from[1] - sine * from[0];
    const double a = cosine * from[0] + sine * from[1];
    const double b = cosine * to[0] + sine * to[1];
    const Index line = lines_.NumberOf({angle / kLeastAngle * weld_, offset}, 0);
    return {line, std::min(a, b), std::max(a, b), a <= b};
  }

  static std::map<double, double>::iterator FirstEndingBehind(std::map<double, double>& cover,
                                                              double position) {
    auto next = cover.upper_bound(position);
    if (next != cover.begin() && std::prev(next)->second >= position) {
      --next;
    }
    return next;
  }

  template <class Visit>
  void Report(const Place& place, double begin, double end, Visit visit) const {
    if (end - begin <= weld_) {
      return;
    }
    const double length = place.high - place.low;
    const double first = (begin - place.low) / length;
    const double last = end < place.high ? (end - place.low) / length : 1.0;
    if (place.isForward) {
      visit(first, last);
    } else {
      visit(1.0 - last, 1.0 - first);
    }
  }

  PlanPoint origin_;
  double weld_;
  PlaceTable lines_;
  std::vector<std::map<double, double>> covers_;
};

GroupedSegment pieceOf(const GroupedSegment& segment, double begin, double end) {
  const auto at = [&](double t) {
    return t < 1 ? PlanPoint{segment.from[0] + t * (segment.to[0] - segment.from[0]),
                             segment.from[1] + t * (segment.to[1] - segment.from[1])}
                 : segment.to;
  };
  return {at(begin), at(end), segment.group};
}

// The middle of the box around all ends: offsets from there lose the fewest digits.
PlanPoint middleOf(std::span<const GroupedSegment> segments) {
  PlanPoint low = segments.front().from;
  PlanPoint high = low;
  for (const GroupedSegment& segment : segments) {
    for (const PlanPoint& end : {segment.from, segment.to}) {
      for (std::size_t axis = 0; axis < 2; ++axis) {
        low[axis] = std::min(low[axis], end[axis]);
        high[axis] = std::max(high[axis], end[axis]);
      }
    }
  }
  return {low[0] + (high[0] - low[0]) / 2, low[1] + (high[1] - low[1]) / 2};
}

}  // namespace

std::vector<GroupedSegment> withoutCovered(std::span<const GroupedSegment> segments,
                                           std::span<const GroupedSegment> drawn, double weld) {
  if (segments.empty()) {
    return {};
  }
  LineCover cover(middleOf(segments), weld);
  for (const GroupedSegment& segment : drawn) {
    cover.Take(segment, [](double, double) {});
  }
  std::vector<GroupedSegment> left;
  for (const GroupedSegment& segment : segments) {
    cover.Take(segment,
               [&](double begin, double end) { left.push_back(pieceOf(segment, begin, end)); });
  }
  return left;
}

}  // namespace dxf2d::projection
