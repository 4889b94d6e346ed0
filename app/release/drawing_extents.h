// The room that the shapes of a drawing take.
#pragma once

#include "app/drawing/drawing.h"
#include "app/drawing/plan_extents.h"

namespace dxf2d::release {

// The extents of everything that the drawing shows, blocks where they are inserted. Of a text its
// point alone: how wide it is depends on the reader's font. The drawing must have passed
// checkNesting.
PlanExtents drawingExtents(const Drawing& drawing);

}  // namespace dxf2d::release
