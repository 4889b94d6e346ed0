// The connected pieces of a mesh, and which of their polygons disagree.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/edge_table.h"
#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"

namespace dxf2d::mesh {

// Polygons are of one piece when a chain of edges joins them that exactly two polygons share, each
// running along it in one direction only.
struct Pieces {
  // By polygon: the number of its piece. Pieces are numbered by their first polygons.
  std::vector<Index, LargeAllocator<Index>> pieceOf;
  // By polygon: whether it has to be reversed to agree with the first of its piece.
  std::vector<char> isReversed;
  // By piece.
  std::vector<Index> firstPolygon;
  std::vector<char> isOrientable;
  std::vector<char> isClosed;  // an even number of its polygons at each of its edges

  std::size_t Count() const { return firstPolygon.size(); }
};

// `threads` share the work.
Pieces findPieces(const PolygonMesh& mesh, const EdgeTable& edges, std::size_t threads = 1);

}  // namespace dxf2d::mesh
