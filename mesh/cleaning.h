// Leaves out what has no extent.
#pragma once

#include <cstddef>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Leaves out polygons and segments with a point that is not finite, or so far from the origin that
// sums over its polygon would not be (isUsablePoint). Returns how many.
std::size_t dropNotFinite(PolygonMesh& mesh);

struct CleaningCounts {
  std::size_t repeatedCorners = 0;  // of polygons that stay
  std::size_t degeneratePolygons = 0;
  std::size_t degenerateSegments = 0;
};

// Leaves out corners that repeat the one before them, polygons whose corners all lie within
// `distance` of the line through the first corner and the one farthest from it (which have no area
// worth the name), and segments between a point and itself. The mesh is welded. `threads` share the
// work.
CleaningCounts dropDegenerate(PolygonMesh& mesh, double distance, std::size_t threads = 1);

}  // namespace dxf2d::mesh
