// From a model's nodes to a scene whose plan the plug-in draws.
#pragma once

#include <string>

#include "app/model/model_source.h"
#include "app/model/object_names.h"
#include "app/model/plan_content.h"
#include "app/model/plan_options.h"

struct aiScene;

namespace dxf2d {

// Every chosen node of the model that carries meshes becomes an object: a node directly under the
// scene with the names of an object and the plan part of its world transform, a shift and a turn
// about z. Below it stands a leaf without names for each mesh of which an edge shows, in the color
// that its material is drawn in; the residual transform is in its coordinates. Objects whose meshes
// and residual transforms agree have one graphic name and one geometry, and only those. Animations
// and bones are left at rest.
//
// That holds where options.linework has each object drawn by itself; else see addLinework.
//
// With PlanLabels::kName, objects of which something shows have labels (LabelFinder) after all
// objects, directly under the scene, where placeLabels finds room for them. Objects are the same
// with labels and without.
//
// Throws ModelError when a mesh has a vertex that is not finite or a face that names no vertex,
// when a transform is not finite, when there is nothing to draw, or more than the limits allow;
// when the file changes meanwhile; UsageError when the drawing's unit is given and the model's is
// not known, and when a pattern matches no object.
PlanScene makePlanScene(const aiScene& model, const ModelSource& source,
                        const PlanOptions& options);

// The same as a part of a larger drawing, whose objects' names are `names`. Does not throw when
// there is nothing to draw; see requireObjects.
PlanScene makeViewScene(const aiScene& model, const ModelSource& source, const PlanOptions& options,
                        ObjectNames& names);

// Throws ModelError when a drawing has no object.
void requireObjects(const PlanContent& content, const ModelSource& source,
                    const PlanOptions& options);

}  // namespace dxf2d
