// Reduces geometry to the edges that a plan of it shows.
#pragma once

#include <cassert>
#include <cstddef>
#include <vector>

#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "platform/parallel.h"

namespace dxf2d {

// The view is along z. The plan of a face set shows its explicit lines, its open borders and its
// silhouette edges, which lie between a polygon that faces the viewer and one that does not. Both
// functions run these stages (the files are in geometry/outline/):
//   1. weld                 equal points become one point               weld.h
//   2. expand               runs become polygons and explicit edges     run_expansion.h
//   3. find incident faces  edges with the polygons that have them      edge_table.h
//   4. classify             which edges are drawn                       silhouette.h
//   5. flatten              z = 0
//   6. remove               duplicate and degenerate edges              edge_chains.h
//   7. chain                edges joined into polylines                 edge_chains.h
// The time is linear in the input, except for sorting at points that a great many edges share. The
// scratch memory, one set for each thread, is reused from call to call.
//
// `points`: in the coordinate system of the block that will hold the drawing, any unit.
// `indices`: runs with their codes (ktscene/kt_run_code.h). An entry that names no point, or a
// point that is not finite, takes part in no edge.
//
// Returns true when there is an edge to draw: `points` are then welded and flat, and `indices`
// holds chains, each ended by KtRunCode::kLineStrip; a closed loop is a chain that ends where it
// began. Otherwise there is nothing to draw, and the content of `points` and `indices` is
// unspecified.
//
// `reverseOrientation` flips the front of every polygon (false: the front is counter-clockwise).
// `closedSurface` has no effect: open borders are drawn whether or not the host calls the surface
// closed.
bool BuildOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface);

// The same for lines: no silhouettes, and of polygons only the edges with one incident face.
bool BuildLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices);

// Coordinates as a host sends them, x, y, z triples (a remainder is ignored), and the transform to
// the coordinate system of the block. Refers to both, which must outlive it.
struct PlacedCoords {
  const std::vector<double>& coords;
  const KtMatrix& transform;
  // The usual case: a set in the coordinate system of its object.
  bool isInPlace = transform.IsIdentity();

  std::size_t Count() const { return coords.size() / 3; }
  // In place, -0 stays -0; a product with the identity would turn it into 0.
  KtPoint3 At(std::size_t i) const {
    assert(i < Count());
    KtPoint3 point(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    if (!isInPlace) {
      point.Mult(transform);
    }
    return point;
  }
};

// Frees what outlines keep from call to call, in any thread.
void freeOutlineMemory();

// The same outlines without a list of all points first, and without changing `indices`: the result
// goes to `points` and `outline` (which may be `indices` itself). The stages up to the
// classification of large sets are done by several threads, which have ended when these return; the
// result is the same with any number of them. The size that `threading` goes by is that of
// `indices`.
bool BuildOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                  std::vector<KtPoint3>& points, std::vector<int>& outline, bool reverseOrientation,
                  bool closedSurface, const Threading& threading = processThreading());
bool BuildLineOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                      std::vector<KtPoint3>& points, std::vector<int>& outline,
                      const Threading& threading = processThreading());

}  // namespace dxf2d
