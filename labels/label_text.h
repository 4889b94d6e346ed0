// Lays out a label and writes it as TEXT entities.
#pragma once

#include <string>

namespace dxf2d {

struct BlockNode;
class DxfWriter;

// Writes the block of `node` with the lines of `label`, whose first two characters are its tag.
//
// The drawing has no multi-line text, so each line is a TEXT of its own: lines are 1.5 heights
// apart, centered as a stack on the anchor, rotated about it by the label's angle. A character is
// taken to advance 0.8 heights (0.32 for "!", "i" and "l"). The node's matrix is not applied: its
// block is placed as a whole.
//
// A `colorIndex` from 1 to 255 is the texts' color; for any other they have the label's color.
// Returns false when the label cannot be parsed; true, with nothing written, for a label without
// lines and on a node that is tilted out of the plane.
bool writeLabel(DxfWriter& writer, BlockNode& node, const std::u16string& label, int colorIndex);

// The advance of one character: `advance`, or 0.4 of it for the narrow ones.
double characterAdvance(char16_t character, double advance);

// Rotates (x, y, z) about the axis by `angle` degrees; below 1e-5 degrees it is not changed.
void rotateOffset(double& x, double& y, double& z, double angle, double axisX, double axisY,
                  double axisZ);

}  // namespace dxf2d
