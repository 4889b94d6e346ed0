// Writes an analytic box as a plan shows it.
#pragma once

#include <vector>

namespace dxf2d {

struct BlockNode;
class DxfWriter;

// Used for one call. No callback reaches it: the special-geometry callback declines every shape, so
// the host sends tessellations.
//
// `parameters` are three sizes, along x, y and z; the box is centered on the z axis. Every
// operation returns false, with nothing written, without a session's writer or a node, for a wrong
// number of sizes, and for a size that is not above 0. Angles are in radians.
class BoxWriter {
 public:
  BoxWriter();

  // Chooses the writer by the rotation of the node's matrix.
  bool WriteBox(BlockNode* node, const std::vector<double>& parameters);

  // Sets the node that the operations below write; initially null.
  void SetNode(BlockNode* node) { node_ = node; }

  // The top face.
  bool WriteTurnedAboutZ(const std::vector<double>& parameters, double angle);
  // The face toward the viewer after quarter turns about x or y. The side faces follow different
  // conventions (from 0 to c at y = -b/2; from -c/2 to c/2 at x = a/2), deliberately.
  bool WriteQuarterTurnAboutX(const std::vector<double>& parameters, double angle);
  bool WriteQuarterTurnAboutY(const std::vector<double>& parameters, double angle);
  // Bottom, top and the four edges between.
  bool WriteWireframe(const std::vector<double>& parameters);
  // The top face of a box that is not rotated, nothing otherwise.
  bool WriteTopOnly(const std::vector<double>& parameters, double angle);

  // Six faces. The sizes are not tested; no effect without a writer or a node.
  void WriteSolid(BlockNode* node, double a, double b, double c);

 private:
  // What the writers share: tests the sizes and writes outlineOf(size) as a block.
  template <class OutlineOf>
  bool WriteOutline(const std::vector<double>& parameters, OutlineOf outlineOf);
  bool IsQuarterTurn(double angle) const;
  bool IsHalfTurn(double angle) const;

  DxfWriter* writer_;
  BlockNode* node_ = nullptr;
  double halfPi_ = 1.5707963267948966;
  double pi_ = 3.141592653589793;
  double threeHalfPi_ = 4.71238898038469;
  double twoPi_ = 6.283185307179586;
};

// Returns whether both angles round to the same multiple of 10^-places. The multiples are compared
// as 32-bit integers: a multiple outside their range equals no other.
bool anglesEqual(double a, double b, int places = 4);

// Writes a box as the current node's block. Returns false as BoxWriter does.
bool writeBox(const std::vector<double>& parameters);

}  // namespace dxf2d
