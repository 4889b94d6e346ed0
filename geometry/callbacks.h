// The callbacks for face sets, line sets and face geometry.
//
// `coords` are x, y, z triples (a remainder is ignored), index lists are runs with their codes
// (ktscene/kt_run_code.h). session/callbacks.h has the rules for all callbacks.
#pragma once

#include <vector>

#include "session/export_macro.h"

struct Texture;

// Draws a line set as polylines in the current node's block. Returns false without a session or a
// current node, or if either list is empty; otherwise true, also when there is nothing to draw in
// plan.
DXF2D_EXPORT bool DXF2dLineGeometry(const std::vector<double>& coords,
                                    const std::vector<int>& indices);

// Draws every edge of a face geometry that is distinct in plan as a line, through the node's
// matrix. Only `coords`, `coordIndex` and the size of `normals` matter: exactly three doubles mean
// that the set is planar, and edges between its triangles are left out. Returns false, with nothing
// written, when there is no edge to draw. Exported, not registered.
DXF2D_EXPORT bool DXF2dFaceGeometry(
    const std::vector<double>& coords, const std::vector<int>& coordIndex,
    const std::vector<double>& normals, const std::vector<int>& normalIndex,
    const std::vector<double>& texCoords, const std::vector<int>& texIndex, bool reverseOrientation,
    bool closedSurface, bool normalPerVertex, bool convex, const Texture* texture);

namespace dxf2d {

// The face-set callback, slot 10: draws the outline of a face set as polylines in the current
// node's block. Returns false without a session or a current node, or if either list is empty;
// otherwise true, also when there is nothing to draw in plan. `reverseOrientation` and
// `closedSurface` as for BuildOutline.
bool faceSetCallback(const std::vector<double>& coords, const std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface);

}  // namespace dxf2d
