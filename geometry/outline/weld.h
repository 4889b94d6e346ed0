// Welds points that are equal.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry/outline/numbered_points.h"
#include "geometry/outline/run_expansion.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

struct WeldScratch {
  PointNumbers numbers;
  std::vector<BlockPoints> blocks = std::vector<BlockPoints>(1);

  std::size_t CapacityBytes() const;
};

// Keeps the first of equal points (exactly equal; -0 equals 0), in the given order, and renumbers
// `indices` accordingly. Points that are not finite are dropped; entries that name them, or no
// point at all, become kNoPoint. Negative entries are run codes and stay.
void weldPoints(std::vector<KtPoint3>& points, std::vector<int>& indices, WeldScratch& scratch);

// The same for points given as `coords`, x, y, z triples (a remainder is ignored), and multiplied
// by `transform`: the kept points replace `points`, the renumbered `indices` replace `welded`. A
// set of triangles that share no points has six times the points that are kept, so storing them all
// first would take most of the memory of an outline. The result does not depend on `threads`.
void weldCoords(const std::vector<double>& coords, const KtMatrix& transform,
                const std::vector<int>& indices, std::size_t threads, std::vector<KtPoint3>& points,
                std::vector<int>& welded, WeldScratch& scratch);

// The same for triangles, `runs` being triangleRunsOf(indices): their corners, three each without
// the code, replace `corners`.
void weldTriangles(const std::vector<double>& coords, const KtMatrix& transform,
                   const std::vector<int>& indices, TriangleRuns runs, std::size_t threads,
                   std::vector<KtPoint3>& points, PointNumbers& corners, WeldScratch& scratch);

}  // namespace dxf2d
