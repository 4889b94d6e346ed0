// Reduces geometry to the edges that a plan of it shows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"

// The view is along z: of a face set the plan shows the explicit lines, the open borders and the
// silhouette edges, between a polygon that faces the viewer and one that does not. Both functions
// run
//   1. weld             equal points become the first of them        geometry/weld.h
//   2. expand           runs become polygons and explicit edges      geometry/run_expansion.h
//   3. find neighbours  edges with the polygons that use them        geometry/edge_table.h
//   4. classify         which edges are drawn                        geometry/silhouette.h
//   5. flatten          z = 0
//   6. thin out         one edge a segment, none of no length        geometry/edge_chains.h
//   7. chain            edges joined end to end                      geometry/edge_chains.h
// in time linear in the input (but for sorting at points that a great many edges share), in scratch
// memory that is reused from call to call, one set of it for each thread.
//
// `points`: in the coordinate system of the block that will hold the drawing, any unit.
// `indices`: runs closed by codes (geometry/index_codes.h). An entry that names no point, or a
// point that is not finite, takes part in no edge.
//
// True when there is an edge to draw: `points` are then welded and flat, and `indices` holds
// chains, each closed by -6; a closed loop is a chain that ends where it began. False otherwise:
// `points` are then welded, perhaps flat, `indices` are of no use, and there is nothing to write.
//
// `reverseOrientation` turns the front of every polygon (false: counter-clockwise). `closedSurface`
// has no effect: open borders are drawn whether or not the host calls the surface closed.
bool BuildOutline(std::vector<KtPoint3>& points, std::vector<int>& indices, bool reverseOrientation,
                  bool closedSurface);

// The same for lines: no silhouettes, and of polygons only the edges that one polygon alone uses.
bool BuildLineOutline(std::vector<KtPoint3>& points, std::vector<int>& indices);

// Coordinates as a host sends them, x, y, z triples (a remainder is ignored), and the transform
// that puts them into the block.
struct PlacedCoords {
  const std::vector<double>& coords;
  const KtMatrix& transform;
  // As most sets are: they belong to the object that they stand in.
  bool isInPlace = std::equal(transform.Data(), transform.Data() + 16, KtMatrix().Data());

  std::size_t Count() const { return coords.size() / 3; }
  // In place, -0 stays what it is, which the product with an identity would not leave it.
  KtPoint3 At(std::size_t i) const {
    KtPoint3 point(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    if (!isInPlace) {
      point.Mult(transform);
    }
    return point;
  }
};

// The same outlines of points that are not made one by one first, and of `indices` that stay as
// they are: `points` and `outline` receive what the functions above leave in their arguments
// (`outline` may be `indices` itself).
bool BuildOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                  std::vector<KtPoint3>& points, std::vector<int>& outline, bool reverseOrientation,
                  bool closedSurface);
bool BuildLineOutline(const PlacedCoords& placed, const std::vector<int>& indices,
                      std::vector<KtPoint3>& points, std::vector<int>& outline);
