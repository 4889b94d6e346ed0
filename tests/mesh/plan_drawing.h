// What is drawn of a mesh, by the plug-in's own outline, in a form that can be compared.
#pragma once

#include <vector>

#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"
#include "mesh/repair.h"
#include "tests/mesh/sample_meshes.h"

namespace dxf2d::mesh {

// A straight line in plan in whole millionths: x and y of the lesser end, then of the greater.
using PlanLine = std::array<long long, 4>;

// The segments that BuildLineOutline draws, over all parts, of what a host sends: the edges of
// `drawn`. Sorted; a segment that is drawn twice stands there twice.
std::vector<PlanLine> segmentsOfPlugin(const PolygonMesh& mesh, const DrawnEdges& drawn);
// The segments that `drawn` lists, sorted.
std::vector<PlanLine> segmentsOf(const PolygonMesh& mesh, const DrawnEdges& drawn);

// Straight lines as long as they can be, in ten-thousandths: pieces that meet or lie over one
// another become one.
std::vector<PlanLine> joined(const std::vector<PlanLine>& segments);

// Those of lines in space, seen from `view`.
std::vector<PlanLine> joinedPlan(const std::vector<Line>& lines, const View& view);

// Repairs `mesh` as seen from `view` and returns what the plug-in draws of it, joined. Fails the
// test if that is not what findDrawnEdges lists, or has a segment twice.
std::vector<PlanLine> repairedPlan(const PolygonMesh& mesh, const View& view,
                                   double creaseDegrees = kDefaultCreaseDegrees);

}  // namespace dxf2d::mesh
