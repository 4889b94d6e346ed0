// The rules of a face geometry's wire frame written down plainly, to compare geometry/face_wires.h
// with.
#pragma once

#include <vector>

#include "ktscene/kt_point3.h"

std::vector<int> plainRegroupRuns(const std::vector<int>& coordIndex);
std::vector<int> plainEdgeRuns(const std::vector<int>& regrouped, bool planar);
// Looks through all segments kept so far for each one.
std::vector<int> plainDistinctSegments(const std::vector<int>& edgeRuns,
                                       const std::vector<KtPoint3>& points, const double* matrix);
