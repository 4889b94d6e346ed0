// Plans of objects that are looked at together.
#pragma once

#include <vector>

#include "app/model/model_limits.h"
#include "app/model/model_objects.h"
#include "app/model/object_names.h"
#include "app/model/plan_block.h"
#include "app/model/plan_content.h"
#include "app/model/plan_layout.h"
#include "app/model/plan_options.h"
#include "app/model/plan_source.h"

namespace dxf2d {

// What the plan is made of; all of it outlives the call.
struct LineworkSource {
  const std::vector<ModelObject>& objects;
  const PlanLayout& layout;
  const PlanOptions& options;
  // In place of options.linework.
  const LineworkOptions& linework;
  const SourceFinder& finder;
};

// Adds the objects to the scene as the lines that `linework` asks for (drawLinework), and
// counts them in plan.content. Each object that has lines becomes a node with the names of an
// object, at the origin of the drawing, so that its block is its own; below it stands a leaf
// without names for each mesh and kind of line, in the mesh's color. Where only a cut makes a
// difference, the objects of a block that it meets alike share theirs (groupByCut). The outline of
// the whole view is a node of its own, "outline". Hidden lines are cut into dashes unless they are
// to stay whole.
//
// Returns the objects of which something is visible. Throws ModelError as makePlanScene does; the
// vertices of every object count towards the limit, and so do those of dashes.
std::vector<ShownObject> addLinework(const LineworkSource& source, BlockBuilder& builder,
                                     LimitChecker& limits, ObjectNames& names, PlanScene& plan);

}  // namespace dxf2d
