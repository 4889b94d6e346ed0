// Writes an analytic cylinder as a plan shows it.
#pragma once

#include <vector>

namespace dxf2d {

struct BlockNode;
class DxfWriter;

// Used for one call. No callback reaches it, as with BoxWriter.
//
// `parameters` are a radius and a height. Every operation returns false, with nothing written,
// without a session's writer or a node, for a wrong number of parameters, and for one that is not
// above 0.
class CylinderWriter {
 public:
  CylinderWriter();

  // Writes the side outline if the node's rotation angle is exactly 0, nothing otherwise.
  bool WriteCylinder(BlockNode* node, const std::vector<double>& parameters);

  // Sets the node that the operations below write; initially null.
  void SetNode(BlockNode* node) { node_ = node; }

  // The cylinder seen from the side, its axis along y: a trapezoid, not a rectangle, since its
  // upper right corner is twice as far out as the lower one. Deliberately ends by throwing
  // std::out_of_range, "invalid vector<T> subscript", at its center line, whose end point does not
  // exist: the file then has the polyline and the beginning of the line, but no end of the block.
  bool WriteSideOutline(const std::vector<double>& parameters);
  // The cylinder seen along its axis, as an octagon.
  bool WriteOctagon(const std::vector<double>& parameters);

  // A circle with a thickness. Only the writer and the node are tested.
  void WriteExtrudedCircle(BlockNode* node, double radius, double thickness);

 private:
  DxfWriter* writer_;
  BlockNode* node_ = nullptr;
};

// Writes a cylinder as the current node's block. Returns false as CylinderWriter does.
bool writeCylinder(const std::vector<double>& parameters);

}  // namespace dxf2d
