// Fits what a drawing shows into a page.
#pragma once

#include "app/preview/drawing.h"

// The smallest upright rectangle around points. Points that are not finite take no part in it.
class PlanExtents {
 public:
  void Add(PlanPoint point);
  void Add(const PlanExtents& other);
  bool IsEmpty() const { return isEmpty_; }
  // Whether all points added were finite.
  bool IsFinite() const { return isFinite_; }
  PlanPoint Low() const { return low_; }
  PlanPoint High() const { return high_; }

 private:
  bool isEmpty_ = true;
  bool isFinite_ = true;
  PlanPoint low_;
  PlanPoint high_;
};

// A page, in pixels or points, and the way there from the drawing. y runs downwards on the page.
struct PageFit {
  int width = 0;
  int height = 0;
  // Page units per drawing unit.
  double scale = 1.0;
  // The middle of the drawing, which comes into the middle of the page.
  PlanPoint center;

  PlanPoint Apply(PlanPoint point) const {
    return {width / 2.0 + (point.x - center.x) * scale,
            height / 2.0 - (point.y - center.y) * scale};
  }
};

// The page whose longer side is `size` and which holds `extents` with a margin of a fortieth of
// `size` all round. The shorter side is at least a quarter of the longer. Any finite extents will
// do, a point and the whole range of the numbers included.
PageFit fitPage(const PlanExtents& extents, int size);
