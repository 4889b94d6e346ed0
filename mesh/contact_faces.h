// Leaves out faces in which two bodies touch.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// Leaves out those of the polygons with these numbers, ascending, at each of whose edges exactly
// two others go on, one on either side of it: given twice, as the wall of one body and of another,
// such a polygon is inside of both together. `edges` are those of the mesh, and no longer if
// anything was left out. Returns how many were.
std::size_t dropContactFaces(PolygonMesh& mesh, const EdgeTable& edges,
                             const std::vector<Index>& suspects);

}  // namespace dxf2d::mesh
