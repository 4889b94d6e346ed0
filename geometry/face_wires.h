// The stages of the wire frame of a face geometry.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

// Sorts the runs of `coordIndex` by kind: all triangle lists joined into one, then fans, strips and
// polygons, each closed by its code. Runs of other codes are dropped. Joined, an edge that
// triangles of different lists share is one edge.
std::vector<int> regroupRuns(const std::vector<int>& coordIndex);

// The edges of regrouped runs: of triangles each edge as a run closed by -1, in edge order (with
// `planar`, those that an even number of triangles share cancel out); of a fan or strip its outer
// loop, closed by -6, first index repeated; of polygons none.
std::vector<int> edgeRuns(const std::vector<int>& regrouped, bool planar);

// The segments of edge runs as runs (i, j, -1), each place in plan once (geometry/segment_grid.h).
// A loop's closing segment comes first, from its first index to its last. Segments with an end that
// names no point, or a point that is not finite as it stands or once multiplied by `matrix` (16
// doubles), are left out.
std::vector<int> distinctSegments(const std::vector<int>& edgeRuns,
                                  const std::vector<KtPoint3>& points, const double* matrix);
