// What is known of a model and of its drawing, for reports.
#pragma once

#include <string>

#include "app/export/drawing_counts.h"
#include "app/model/plan_content.h"

namespace dxf2d {

// The facts of a scene file: a JSON object (see batch::Record::facts).
std::string factsOfScene(const std::string& path, const DrawingCounts& counts);

// The facts of a model that `reader` has read.
std::string factsOfModel(const std::string& path, const std::string& reader,
                         const PlanContent& content, const DrawingCounts& counts);

}  // namespace dxf2d
