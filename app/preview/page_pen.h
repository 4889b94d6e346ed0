// Draws entities onto a page.
#pragma once

#include <cairo.h>

#include <span>

#include "app/preview/drawing.h"
#include "app/preview/drawing_nesting.h"
#include "app/preview/page_fit.h"
#include "app/preview/text_shaper.h"

// Refers to all that it is made of. The drawing's placed points must be finite and within the
// extents that the page was fitted to: cairo keeps coordinates in 24 bits.
class PagePen {
 public:
  PagePen(cairo_t* cairo, const PageFit& fit, TextShaper& texts);

  // Draws one entity of a block that stands so; an INSERT draws nothing.
  void Draw(const DrawingEntity& entity, const Placement& placement);

 private:
  void DrawLines(std::span<const PlanPoint> points, bool closed, const Placement& placement);
  void DrawCircle(const CircleEntity& circle, const Placement& placement);
  void DrawText(const TextEntity& text, const Placement& placement);

  void SetColor(int color);
  void MoveTo(PlanPoint page);
  // Leaves out what lies on the point before.
  void LineTo(PlanPoint page);
  void LineToLast(PlanPoint page);

  cairo_t* cairo_;
  const PageFit& fit_;
  TextShaper& texts_;
  int color_ = -1;
  PlanPoint last_;
  int pathLength_ = 0;
};
