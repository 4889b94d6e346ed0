// Fits what a drawing shows into a page.
#pragma once

#include "app/drawing/plan_extents.h"

namespace dxf2d {

// Half a drawing's longer side below which what fills a page would overflow; nothing so small has a
// shape to show.
inline constexpr double kLeastHalf = 1e-290;

// A page, in units of its own, and the way there from the drawing. y runs downwards on the page.
struct PageLayout {
  double width = 0.0;
  double height = 0.0;
  // Page units per drawing unit.
  double scale = 1.0;
  // The middle of the drawing, and where on the page it comes.
  PlanPoint center;
  PlanPoint middle;
};

// In pixels, points or millimeters.
struct PageFit : PageLayout {
  // Page units of a millimeter on paper; 0 where all lines are alike, 1.5 page units wide.
  double millimeter = 0.0;
  // Page units that make a difference to see, about a pixel.
  double resolution = 1.0;

  PlanPoint Apply(PlanPoint point) const {
    return {middle.x + (point.x - center.x) * scale, middle.y - (point.y - center.y) * scale};
  }
};

// The page whose longer side is `size` and which holds `extents` with a margin of a fortieth of
// `size` all round. The shorter side is at least a quarter of the longer. Any finite extents will
// do, a point and the whole range of the numbers included.
PageFit fitPage(const PlanExtents& extents, int size);

}  // namespace dxf2d
