// Keeps one of each.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// A polygon that stays, of which one duplicate was left out, of another part.
struct DoubledPolygon {
  Index polygon;
  Index otherPart;
};

struct Duplicates {
  std::size_t dropped = 0;
  std::vector<DoubledPolygon> doubled;  // in order of the polygons
};

// Keeps of the polygons with the same corners (in any order and winding, of any part) the first.
// The mesh is cleaned. `edges` are those of the mesh, and no longer if anything was left out.
// `threads` share the work.
Duplicates dropDuplicatePolygons(PolygonMesh& mesh, const EdgeTable& edges,
                                 std::size_t threads = 1);

// The same for segments, either way round.
std::size_t dropDuplicateSegments(PolygonMesh& mesh);

}  // namespace dxf2d::mesh
