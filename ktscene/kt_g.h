// Geometry operations of the host.
#pragma once

#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_point3.h"

namespace KtG {

// The unit normal of the polygon whose point numbers start at position `first` of `indices` and end
// at the next -7 (or the list's end): Newell's sum as a fan of triangles about the first point.
// `orientation` true: the side from which the polygon runs counter-clockwise is its front; false:
// the other. Answers false and leaves `normal` alone for fewer than three entries, an entry that
// names no point, or a sum whose length is 0 or not finite.
KT_SCENE_API bool ComputeNormal(const std::vector<KtPoint3>& points,
                                const std::vector<int>& indices, unsigned int first,
                                bool orientation, KtPoint3& normal);

}  // namespace KtG
