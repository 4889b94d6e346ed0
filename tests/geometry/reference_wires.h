// The reference implementation of a face geometry's wire frame: simple and slow, to compare
// geometry/face_wires.h with.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

namespace dxf2d {

std::vector<int> referenceRegroupRuns(const std::vector<int>& coordIndex);
std::vector<int> referenceEdgeRuns(const std::vector<int>& regrouped, bool planar);
// Looks through all segments kept so far for each one.
std::vector<int> referenceDistinctSegments(const std::vector<int>& edgeRuns,
                                           const std::vector<KtPoint3>& points,
                                           const KtMatrix& matrix);

}  // namespace dxf2d
