// The outline of everything that a scene covers in plan.
#pragma once

#include <cstddef>
#include <span>

#include "platform/parallel.h"
#include "projection/candidate_edges.h"
#include "projection/scene.h"
#include "projection/segment_chains.h"

namespace dxf2d::projection {

struct UnionOutline {
  // Closed loops of four points or more, the first again as the last; outer loops
  // counter-clockwise, holes clockwise. No segment occurs twice in a group. The polylines' groups
  // are those of `groupOfPart`.
  Polylines loops;
  // Pieces of the boundary that joined no loop: where the scene has details smaller than the weld
  // distance, or where `edges` misses borders or silhouettes.
  std::size_t droppedPieces = 0;
};

// The boundary of the union of all triangles in plan, for each group of parts by itself: part p is
// in group groupOfPart[p]. `edges` has to hold all borders and silhouettes of the scene (of a
// section, the cuts too), found with the same tolerances (outlineTolerancesFor); its creases and
// lines are not used.
//
// The boundary is what of those edges has triangles on one side only: each is cut where it meets
// another, and the middle of each piece is looked up in the cells of the plan. A cell that one
// triangle covers holds no boundary. Details narrower than `tolerances.weld` may disappear. The
// time is about linear in the number of triangles. The cells are shared by threads; the result is
// the same with any number.
UnionOutline findUnionOutline(const Scene& scene, std::span<const CandidateEdge> edges,
                              std::span<const Index> groupOfPart, const Tolerances& tolerances,
                              const Threading& threading = {});

}  // namespace dxf2d::projection
