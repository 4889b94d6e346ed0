// Writes an analytic cylinder as a plan shows it.
#pragma once

#include <vector>

struct BlockNode;
class DxfWriter;

// Lives for one call. No callback reaches it, as with BoxWriter.
//
// `parameters` are a radius and a height. Every operation answers false, with nothing written,
// without a writer or a node, for a wrong number of parameters, and for one that is not above 0.
class CylinderWriter {
 public:
  CylinderWriter();

  // Writes the side outline of a cylinder whose node is not turned at all (exactly), nothing
  // otherwise.
  bool WriteCylinder(BlockNode* node, const std::vector<double>& parameters);

  // The node that the writers below work on, null at first.
  void SetNode(BlockNode* node) { node_ = node; }

  // The cylinder seen from the side, its axis along y: a trapezoid, not a rectangle, since its
  // upper right corner lies twice as far out as the lower one. Deliberately ends in
  // std::out_of_range, "invalid vector<T> subscript", when it comes to its centre line, whose end
  // it does not have: the polyline and the line's beginning are in the file then, the block's end
  // is not.
  bool WriteSideOutline(const std::vector<double>& parameters);
  // The cylinder seen along its axis, as an octagon.
  bool WriteOctagon(const std::vector<double>& parameters);

  // A circle with a thickness. Nothing is tested but the writer and the node.
  void WriteExtrudedCircle(BlockNode* node, double radius, double thickness);

 private:
  DxfWriter* writer_;
  BlockNode* node_ = nullptr;
};

// Writes a cylinder into the current node's block.
bool writeCylinder(const std::vector<double>& parameters);
