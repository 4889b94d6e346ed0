// Joins the lines of each object of a drawing.
#pragma once

#include <vector>

#include "app/drawing/drawing.h"
#include "app/finish/summary.h"

namespace dxf2d::finish {

// Joins what is drawn alike among the lines, polylines and faces of `entities`, in the order in
// which each likeness first stands there; the other entities follow. Counts into `summary`.
void joinEntities(std::vector<DrawingEntity>& entities, double simplifyTolerance, Summary& summary);

}  // namespace dxf2d::finish
