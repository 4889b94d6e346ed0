// Small polygons as triangles.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Cuts a polygon, of four corners or more, into triangles, wound as it is: seen along the axis
// nearest to its normal, one convex corner after another that no other corner lies behind. A convex
// polygon becomes a fan around its last corner. Returns nothing for a polygon without area, or in
// which no such corner is left because it crosses itself. The time grows with the cube of the
// corners.
std::vector<std::array<Index, 3>> clipEars(const std::vector<Point>& points,
                                           std::span<const Index> corners);

}  // namespace dxf2d::mesh
