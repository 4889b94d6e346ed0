// Which objects of a model one block can draw although a plane cuts the model.
#pragma once

#include <cstddef>
#include <vector>

#include "app/model/linework_options.h"
#include "app/model/plan_layout.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d {

// Objects, by number, that have the same lines; the first is the one that is drawn.
using ObjectGroup = std::vector<std::size_t>;

// The z of the plane in the drawing; `blocks` are the meshes of the layout's blocks.
double heightOfCut(const CutPlane& plane, const PlanLayout& layout,
                   const std::vector<mesh::PolygonMesh>& blocks);

// The objects of each block that the plane at `height` cuts at the same place, and those that are
// wholly below it, in order of the first of each group. Those wholly above it are in groups, too.
std::vector<ObjectGroup> groupByCut(const PlanLayout& layout,
                                    const std::vector<mesh::PolygonMesh>& blocks, double height);

}  // namespace dxf2d
