// The sections before the tables, and the names that entities share with the tables.
#pragma once

#include <string_view>

#include "app/drawing/drawing.h"
#include "app/drawing/plan_extents.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

inline constexpr std::string_view kTextStyleName = "Standard";

// The HEADER section. `extents` may be empty; `seed` is above every handle of the drawing.
void writeHeader(TagWriter& tags, const Drawing& drawing, const PlanExtents& extents, Handle seed);

// The CLASSES section: the classes of objects that are newer than the format itself.
void writeClasses(TagWriter& tags, Release release);

}  // namespace dxf2d::release
