// What is made of the plug-in's drawing of one model or scene.
#pragma once

#include "app/export/drawing_completion.h"
#include "app/export/export_request.h"
#include "app/export/finishing_request.h"
#include "app/model/plan_content.h"

namespace dxf2d {

// Throws UsageError for what the model or the release cannot hold.
FinishingPlan finishingOf(const ExportJob& job, const ExportOptions& options);

// What becomes of the drawing of a scene that holds `content`. The format of the options is known.
Completion completionOf(const ExportJob& job, const ExportOptions& options,
                        const FinishingPlan& plan, const PlanContent& content);

}  // namespace dxf2d
