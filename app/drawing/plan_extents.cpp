#include "app/drawing/plan_extents.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {

void PlanExtents::Add(PlanPoint point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
    isFinite_ = false;
    return;
  }
  if (isEmpty_) {
    low_ = high_ = point;
  }
  isEmpty_ = false;
  low_ = {std::min(low_.x, point.x), std::min(low_.y, point.y)};
  high_ = {std::max(high_.x, point.x), std::max(high_.y, point.y)};
}

void PlanExtents::Add(const PlanExtents& other) {
  isFinite_ = isFinite_ && other.isFinite_;
  if (other.isEmpty_) {
    return;
  }
  Add(other.low_);
  Add(other.high_);
}

}  // namespace dxf2d
