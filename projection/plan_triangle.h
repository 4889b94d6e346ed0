// Triangles in plan: how they are made, compared, and lie to a rectangle.
#pragma once

#include <cstdint>

#include "projection/plan_cell.h"
#include "projection/scene.h"

namespace dxf2d::projection {

// The tolerance across triangle `t`, square to it: `touch` (Tolerances::touch), or twice the
// deviation of its part, if that is more: of two faces that should be level, each deviates.
double touchOf(const Scene& scene, std::size_t t, double touch);

// Triangle `t` of the scene, its coordinates relative to (middleX, middleY), with the tolerance
// touchOf(scene, t, touch) across it. It has an area in plan.
PlanTriangle makePlanTriangle(const Scene& scene, Index t, double middleX, double middleY,
                              double touch);

// Highest top first; then by what makes triangles equal, so that equal ones stand together.
bool standsBefore(const PlanTriangle& a, const PlanTriangle& b);
// Whether two triangles are at the same place.
bool areTwins(const PlanTriangle& a, const PlanTriangle& b);

// How the triangle's sides lie to a rectangle.
enum class Overlap : std::uint8_t { kNone, kSome, kCovers };

Overlap overlapOf(const PlanTriangle& triangle, const Rectangle& rectangle, double slack);

// The lowest and the highest of the triangle's heights above the rectangle, or beyond.
Interval heightsOver(const PlanTriangle& triangle, const Rectangle& rectangle);

}  // namespace dxf2d::projection
