// The plan-view test.
#pragma once

#include "session/block_node.h"

class KtGraphicAttribute;

// Tilt out of the drawing plane, the sum of the absolute rotations about x and y in radians, up to
// which a node counts as seen in plan and may be drawn as an instance.
inline constexpr double kPlainTilt = 0.03;

// True when `node` lies in the drawing plane, turned about z at most, and `attribute` (null: not
// asked) has no colour or material of its own. False for a null node.
bool isPlainInstance(const BlockNode* node, const KtGraphicAttribute* attribute);
