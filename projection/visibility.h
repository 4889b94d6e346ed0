// Hidden-line removal.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/parallel.h"
#include "projection/candidate_edges.h"
#include "projection/scene.h"

namespace dxf2d::projection {

// A piece of a candidate edge: from + t (to - from) for t in [begin, end].
struct EdgePiece {
  Index edge;
  double begin;
  double end;

  friend bool operator==(const EdgePiece&, const EdgePiece&) = default;
};

// A piece of a line along which two faces pierce each other.
struct PiercingPiece {
  Point from;
  Point to;
  Index part;  // the lesser of the two faces' parts

  friend bool operator==(const PiercingPiece&, const PiercingPiece&) = default;
};

struct VisibleLines {
  // In order of the edge, then along it; no two of an edge touch.
  std::vector<EdgePiece> pieces;
  // In pieces by cells of the grid; joinSegments (projection/segment_chains.h) makes them whole.
  std::vector<PiercingPiece> piercings;
};

// The parts of the candidate edges that can be seen from z = +infinity, and of the lines along
// which faces pierce each other, as seen.
//
// A point of an edge is hidden if a triangle lies above it: in plan, within `tolerances.plan` of
// the triangle or in it, and further below its plane than its tolerance (touchOf,
// projection/plan_triangle.h). So
//   - what lies in a face, or against one, is not hidden by it: a wall's foot on a slab, the common
//     border of two boxes, an edge and its own faces, two copies of a face;
//   - of edges that coincide in plan only the highest is visible: of a box seen along an axis the
//     upper border and not the lower.
// Triangles narrower in plan than `tolerances.edgeOn` hide nothing. `edges` has to hold all borders
// and silhouettes of the scene, whatever else is wanted: where they cross an edge, what hides it
// begins or ends.
//
// How: the plan is divided into cells, down to a few triangles and edges in each. Within a cell,
// each edge is cut where a higher candidate crosses it and where it pierces a triangle; the middle
// of each piece tells whether the piece is hidden. What lies below a triangle that covers a whole
// cell is not looked at. The time is about linear in the number of triangles at constant density,
// and less where much is hidden.
//
// The cells are shared by threads; the result is the same with any number.
VisibleLines findVisibleLines(const Scene& scene, std::span<const CandidateEdge> edges,
                              const Tolerances& tolerances, const Threading& threading = {});

// The complement: what of `count` edges is not in `visible`, in the same order. Lines along which
// hidden faces pierce each other are not known.
std::vector<EdgePiece> hiddenPieces(std::size_t count, std::span<const EdgePiece> visible);

}  // namespace dxf2d::projection
