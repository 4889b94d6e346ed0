#include "app/preview/page_fit.h"

#include <algorithm>
#include <cmath>

void PlanExtents::Add(PlanPoint point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
    isFinite_ = false;
    return;
  }
  if (isEmpty_) low_ = high_ = point;
  isEmpty_ = false;
  low_ = {std::min(low_.x, point.x), std::min(low_.y, point.y)};
  high_ = {std::max(high_.x, point.x), std::max(high_.y, point.y)};
}

void PlanExtents::Add(const PlanExtents& other) {
  isFinite_ = isFinite_ && other.isFinite_;
  if (other.isEmpty_) return;
  Add(other.low_);
  Add(other.high_);
}

PageFit fitPage(const PlanExtents& extents, int size) {
  const PlanPoint low = extents.Low();
  const PlanPoint high = extents.High();
  // Halves, because the difference of two large numbers may be no number.
  const PlanPoint half = {high.x / 2.0 - low.x / 2.0, high.y / 2.0 - low.y / 2.0};
  const double longHalf = std::max(half.x, half.y);
  const double margin = size / 40.0;
  const double usable = size - 2.0 * margin;

  PageFit fit;
  fit.center = {low.x / 2.0 + high.x / 2.0, low.y / 2.0 + high.y / 2.0};
  // Below this the quotient would overflow; nothing so small has a shape to show.
  constexpr double kLeastHalf = 1e-290;
  fit.scale = longHalf > kLeastHalf ? usable / 2.0 / longHalf : 1.0;

  const double shortHalf = std::min(half.x, half.y);
  const double shortSide = 2.0 * (shortHalf * fit.scale + margin);
  const int shorter = std::clamp(static_cast<int>(std::ceil(shortSide)), (size + 3) / 4, size);
  fit.width = half.x >= half.y ? size : shorter;
  fit.height = half.x >= half.y ? shorter : size;
  return fit;
}
