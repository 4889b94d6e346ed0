// The OBJECTS section.
#pragma once

#include "app/drawing/plan_extents.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

// The dictionaries that readers look for, the layouts of both spaces, and the plot and line styles
// that other objects refer to.
void writeObjects(TagWriter& tags, const PlanExtents& extents);

}  // namespace dxf2d::release
