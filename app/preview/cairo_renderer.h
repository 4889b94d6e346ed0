// Draws entities onto a page.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <span>

#include "app/drawing/drawing.h"
#include "app/drawing/drawing_nesting.h"
#include "app/preview/page_fit.h"
#include "app/preview/text_shaper.h"

namespace dxf2d {

// Refers to all that it is made of. The drawing's placed points must be finite and within the
// extents that the page was fitted to: cairo keeps coordinates in 24 bits.
class CairoRenderer {
 public:
  CairoRenderer(cairo_t* cairo, const PageFit& fit, TextShaper& texts, const Drawing& drawing);

  // Draws one entity of a block that stands so; an INSERT draws nothing.
  void Draw(const DrawingEntity& entity, const Placement& placement);

 private:
  void DrawLines(std::span<const PlanPoint> points, bool closed, const Placement& placement);
  void DrawCircle(const CircleEntity& circle, const Placement& placement);
  void DrawText(const TextEntity& text, const Placement& placement);

  // The color, width and dashes of an entity, or of its layer where it has none of its own.
  void SetStyle(const EntityProperties& properties, const Placement& placement);
  void SetColor(int color, std::int32_t trueColor);
  void SetWidth(std::int16_t weight);
  void SetDashes(bool isDashed);
  void MoveTo(PlanPoint page);
  // Leaves out what lies on the point before.
  void LineTo(PlanPoint page);
  void LineToLast(PlanPoint page);

  cairo_t* cairo_;
  const PageFit& fit_;
  TextShaper& texts_;
  const Drawing& drawing_;
  int color_ = -1;
  std::int32_t trueColor_ = kNoTrueColor;
  double width_ = 0.0;
  bool isDashed_ = false;
  PlanPoint last_;
  int pathLength_ = 0;
  // Whether the beginning of the line that is being drawn was drawn already.
  bool isSplit_ = false;
};

}  // namespace dxf2d
