// The room that an entity takes in the plan.
#pragma once

#include "app/drawing/drawing.h"
#include "app/drawing/drawing_nesting.h"
#include "app/preview/page_fit.h"
#include "app/preview/text_shaper.h"

namespace dxf2d {

// The points of `entity` placed so; none for what shows nothing (no vertices, no letters) and for
// an INSERT.
PlanExtents placedExtents(const DrawingEntity& entity, const Placement& placement,
                          TextShaper& texts);

// Where a text's letters stand: from heights of a capital letter, right and up from the text's
// point, to the block that holds the text.
class TextFrame {
 public:
  explicit TextFrame(const TextEntity& text);
  PlanPoint Apply(PlanPoint letters) const {
    const PlanPoint turned = turn_.Apply({letters.x * advance_, letters.y * height_});
    return {at_.x + turned.x, at_.y + turned.y};
  }

 private:
  Placement turn_;
  PlanPoint at_;
  double height_;
  double advance_;
};

}  // namespace dxf2d
