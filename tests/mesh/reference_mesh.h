// The stages of repair, and the edges that show, as their rules read: the reference
// implementation that the fast forms are compared with. Of second order and more.
#pragma once

#include <cstddef>
#include <map>
#include <utility>

#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"

namespace dxf2d::mesh {

// By edge, lesser point first: the polygons that use it, and whether they run forward (1), backward
// (-1) or both (0).
using ReferenceEdges = std::map<std::pair<Index, Index>, std::map<Index, int>>;

ReferenceEdges referenceEdges(const PolygonMesh& mesh);
std::size_t referenceWeld(PolygonMesh& mesh, double distance);
std::size_t referenceDropDuplicates(PolygonMesh& mesh);
std::size_t referenceCloseTJunctions(PolygonMesh& mesh, double distance);
void referenceOrient(PolygonMesh& mesh);
DrawnEdges referenceDrawnEdges(const PolygonMesh& mesh, double creaseDegrees);

}  // namespace dxf2d::mesh
