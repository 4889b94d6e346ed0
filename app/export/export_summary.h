// What dxf2d says after an export.
#pragma once

#include <string>

#include "app/export/drawing_completion.h"
#include "app/export/drawing_counts.h"
#include "app/export/finishing_request.h"
#include "app/model/plan_scene.h"

namespace dxf2d {

// One line without its end, nor the drawing's name at its beginning: objects, shared instances,
// parts, polylines, vertices, labels if any, extents; after the seconds, what was left out of the
// drawing and why.
struct Summary {
  std::string beforeTime;
  std::string afterTime;
};

// What was done to the meshes before they were drawn, as a list; empty for nothing.
std::string repairsOf(const MeshWork& work);

// What the drawing lacks, as a list.
std::string skippedOf(const PlanContent& content, const DrawingCounts& counts);

Summary summaryOf(const PlanContent& content, const DrawingCounts& counts);

// The same for a file that is not a DXF drawing, of which only the model's side is known.
Summary summaryOf(const PlanContent& content);

// What was made of the plug-in's drawing, to follow summaryOf; empty where it was left as it is.
std::string finishingSummary(const FinishingPlan& plan, const CompletionReport& report);

}  // namespace dxf2d
