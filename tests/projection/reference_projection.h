// What is seen of a scene, point by point, from all triangles and in extended precision.
#pragma once

#include "projection/candidate_edges.h"
#include "projection/scene.h"

namespace dxf2d::projection {

// Whether something hides a point of the scene from z = +infinity. kEither: that depends on less
// than the slack.
enum class Seen { kVisible, kHidden, kEither };

// How near to a triangle's side, in plan, and to its plane a point may be to be told either way.
struct PointSlack {
  long double plan;
  long double touch;
  // What is below a plane by no more than this touches it, for certain.
  long double touching = touch / 8;
};

Seen seenFrom(const Scene& scene, const Point& point, const PointSlack& slack);

// Whether triangles cover the plan at (x, y); kEither within `slack` of a triangle's side.
Seen coverAt(const Scene& scene, long double x, long double y, long double slack);

}  // namespace dxf2d::projection
