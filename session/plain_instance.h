// The plan-view test.
#pragma once

#include "session/record/block_node.h"

class KtGraphicAttribute;

namespace dxf2d {

// Tilt out of the drawing plane, the sum of the absolute rotations about x and y in radians, up to
// which a node counts as seen in plan and may be drawn as an instance.
inline constexpr double kPlainTilt = 0.03;

// Returns true when `node` lies in the drawing plane, rotated about z at most, and `attribute`
// (null: not tested) has no color or material of its own. False for a null node.
bool isPlainInstance(const BlockNode* node, const KtGraphicAttribute* attribute);

}  // namespace dxf2d
