// What dxf2d says after an export.
#pragma once

#include <string>

#include "app/export/drawing_counts.h"
#include "app/model/plan_scene.h"

// One line without its end: objects, shared instances, parts, polylines, vertices, labels if any,
// extents, seconds
// and what was left out of the drawing and why.
std::string summaryOf(const std::string& drawing, const PlanContent& content,
                      const DrawingCounts& counts, double seconds);
