#include "app/preview/page_fit.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {

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
  fit.middle = {fit.width / 2.0, fit.height / 2.0};
  return fit;
}

}  // namespace dxf2d
