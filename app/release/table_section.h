// The TABLES section.
#pragma once

#include "app/drawing/drawing.h"
#include "app/drawing/plan_extents.h"
#include "app/release/drawing_handles.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

// All nine tables: readers that check a drawing miss each that is not there.
void writeTables(TagWriter& tags, const Drawing& drawing, const DrawingHandles& handles,
                 const PlanExtents& extents);

}  // namespace dxf2d::release
