#include "app/preview/page_fit.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {

PageFit fitPage(const PlanExtents& extents, int size) {
  const PlanPoint half = extents.Half();
  const double longHalf = std::max(half.x, half.y);
  const double margin = size / 40.0;
  const double usable = size - 2.0 * margin;

  PageFit fit;
  fit.center = extents.Middle();
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
