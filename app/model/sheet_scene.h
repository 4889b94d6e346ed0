// From a model to a scene that shows several views of it.
#pragma once

#include "app/model/plan_scene.h"
#include "app/model/sheet_layout.h"

namespace dxf2d {

// Draws the model in each view of the sheet as makePlanScene does in options.view, which does not
// count here. All that stands in a view is below a node without geometry whose matrix places the
// view (placeViews); objects are called "NAME VIEW", so that views share no blocks. Below each view
// stands its name, in capitals. Labels and dashes are as large in all views as in the first one. A
// view in which nothing shows is left out.
//
// The counts of the content are those of all views together, but what holds of the model is counted
// once. The limits hold for each view. Throws as makePlanScene does, for an empty model only if it
// is empty in all views.
PlanScene makeSheetScene(const aiScene& model, const ModelSource& source,
                         const PlanOptions& options, const SheetOptions& sheet);

}  // namespace dxf2d
