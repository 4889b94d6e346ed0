// Welds the points of large sets on several threads.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry/outline/point_index.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

// Replaces `points` by what weldCoords keeps of `coords`, in the same order, and `newIndex` by the
// number of each point among them, or PointIndex::kNone. Equal points have equal hashes, so each
// thread has the points of its share of all hashes to itself; numbers in the order of the first of
// equal points are counted afterwards.
void weldInParallel(const std::vector<double>& coords, const KtMatrix& transform,
                    std::size_t threads, std::vector<KtPoint3>& points, PointNumbers& newIndex);

}  // namespace dxf2d
