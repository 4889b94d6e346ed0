// The stages that reduce a face geometry to its wire frame.
#pragma once

#include <vector>

#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

// Sorts the runs of `coordIndex` by kind: all triangle lists joined into one, then fans, strips and
// polygons, each with its code. Runs with other codes are dropped. Since the lists are joined, an
// edge that triangles of different lists share is one edge.
std::vector<int> regroupRuns(const std::vector<int>& coordIndex);

// The edges of regrouped runs: of triangles each edge as a run (i, j, kSegment), in edge order
// (with `planar`, those that an even number of triangles share cancel out); of a fan or strip its
// outer loop as a kLineStrip run, first index repeated; of polygons none.
std::vector<int> edgeRuns(const std::vector<int>& regrouped, bool planar);

// The segments of edge runs as runs (i, j, kSegment), those that coincide in plan once
// (geometry/segment_grid.h). A loop's closing segment comes first, from its first index to its
// last. Left out are segments with an end that names no point, or a point that is not finite before
// or after it is multiplied by `matrix`.
std::vector<int> distinctSegments(const std::vector<int>& edgeRuns,
                                  const std::vector<KtPoint3>& points, const KtMatrix& matrix);

}  // namespace dxf2d
