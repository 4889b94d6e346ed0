// Makes the windings of a mesh consistent.
#pragma once

#include <cstddef>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

struct OrientationCounts {
  std::size_t polygonsFlipped = 0;      // in pieces whose windings disagreed
  std::size_t piecesTurnedOutward = 0;  // closed pieces that agreed, but faced inwards
  std::size_t nonOrientablePieces = 0;
};

// Reverses polygons, keeping their first corners, so that the polygons of a piece agree across the
// edges that exactly two of them share; such edges are what makes a piece. A closed piece (an even
// number of its polygons at each of its edges) faces outwards, by its signed volume; a piece that
// is open, or has no volume, keeps the side that most of its area has (of equal areas, that of its
// first polygon). A piece that no choice makes agree stays as it is. `edges` are those of the mesh
// and follow the change. `threads` share the work.
OrientationCounts orient(PolygonMesh& mesh, EdgeTable& edges, std::size_t threads = 1);

}  // namespace dxf2d::mesh
