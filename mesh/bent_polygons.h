// Splits polygons that turn away from the viewer within themselves.
#pragma once

#include <cstddef>

#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

inline constexpr std::size_t kMostBentCorners = 64;

// A polygon whose corners are not in one plane is a surface of triangles, as viewers draw it. Where
// one of them shows its front and another its back, as in a view along a warped strip, the outline
// runs along a diagonal: splits such polygons into their triangles, one after the other.
//
// The diagonal of four corners is that from the corner at which the polygon is concave, or else
// from its first. More corners, kMostBentCorners at most, lose one ear after another, seen along
// the axis nearest to the normal; a polygon that crosses itself there stays whole, and so does
// one with a triangle that is not a few times wider than `distance`, that of repair. `threads`
// share the work. Returns how many were split.
std::size_t splitBentPolygons(PolygonMesh& mesh, double distance, std::size_t threads = 1);

}  // namespace dxf2d::mesh
