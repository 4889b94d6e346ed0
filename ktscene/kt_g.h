// Geometry operations of the host.
#pragma once

#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_point3.h"

namespace KtG {

// Computes the unit normal of a polygon, of which the point numbers start at position `first` of
// `indices` and end before the next KtRunCode::kPolygon, or at the list's end.
//
// The sum of the cross products of a fan of triangles about the first point (Newell's normal, so
// the polygon may be concave and need not be flat), divided by its length. `orientation` true: the
// front is the side from which the polygon runs counter-clockwise; false: the other.
//
// Returns false and leaves `normal` alone for fewer than three entries, an entry that does not name
// a point, or a sum whose length is 0 or not finite.
KT_SCENE_API bool ComputeNormal(const std::vector<KtPoint3>& points,
                                const std::vector<int>& indices, unsigned int first,
                                bool orientation, KtPoint3& normal);

}  // namespace KtG
