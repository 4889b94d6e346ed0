// The room that points take in the plan.
#pragma once

#include <algorithm>
#include <cmath>

#include "app/drawing/drawing.h"

namespace dxf2d {

// The smallest upright rectangle around points. Points that are not finite take no part in it.
class PlanExtents {
 public:
  void Add(PlanPoint point) {
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
  void Add(const PlanExtents& other);
  bool IsEmpty() const { return isEmpty_; }
  // Whether all points added were finite.
  bool IsFinite() const { return isFinite_; }
  PlanPoint Low() const { return low_; }
  PlanPoint High() const { return high_; }
  // In halves, since the sum or the difference of two large numbers may not be a number.
  PlanPoint Middle() const { return {low_.x / 2.0 + high_.x / 2.0, low_.y / 2.0 + high_.y / 2.0}; }
  // Half the width, and half the height.
  PlanPoint Half() const { return {high_.x / 2.0 - low_.x / 2.0, high_.y / 2.0 - low_.y / 2.0}; }

 private:
  bool isEmpty_ = true;
  bool isFinite_ = true;
  PlanPoint low_;
  PlanPoint high_;
};

}  // namespace dxf2d
