// Closes T-junctions: points in the middle of a neighbor's edge.
#pragma once

#include <cstddef>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

struct TJunctionCounts {
  std::size_t pointsInserted = 0;
  // Border edges that were not looked at: the search stops when 16 points for each border edge are
  // found, as among edges that all lie on one line, where their square would be.
  std::size_t edgesNotSearched = 0;
};

// Inserts every point of a border edge that lies within `distance` of another polygon's border
// edge, and not at its ends, into that polygon. `edges` are those of the mesh, and no longer
// if anything was inserted.
TJunctionCounts closeTJunctions(PolygonMesh& mesh, const EdgeTable& edges, double distance);

}  // namespace dxf2d::mesh
