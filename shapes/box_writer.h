// Writes an analytic box as a plan shows it.
#pragma once

#include <vector>

struct BlockNode;
class DxfWriter;

// Lives for one call. No callback reaches it: the special-geometry callback declines every shape,
// so the host sends tessellations; a registration that hands the sizes over would enable it.
//
// `parameters` are three sizes, along x, y and z; the box is centred on the z axis. Every operation
// answers false, with nothing written, without a writer or a node, for a wrong number of sizes, and
// for a size that is not above 0; angles are in radians.
class BoxWriter {
 public:
  BoxWriter();

  // Chooses the writer by the rotation of the node's matrix.
  bool WriteBox(BlockNode* node, const std::vector<double>& parameters);

  // The node that the writers below work on, null at first.
  void SetNode(BlockNode* node) { node_ = node; }

  // The top face.
  bool WriteTurnedAboutZ(const std::vector<double>& parameters, double angle);
  // The face towards the viewer after quarter turns about x or y. The sides that the two choose
  // follow different conventions (from 0 to c at y = -b/2; from -c/2 to c/2 at x = a/2):
  // deliberately so.
  bool WriteQuarterTurnAboutX(const std::vector<double>& parameters, double angle);
  bool WriteQuarterTurnAboutY(const std::vector<double>& parameters, double angle);
  // Bottom, top and the four edges between.
  bool WriteWireframe(const std::vector<double>& parameters);
  // The top face of an unturned box, nothing otherwise.
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

// True when both angles round to the same multiple of 10^-places. The multiples are taken as 32-bit
// integers; one outside them equals no other.
bool anglesEqual(double a, double b, int places = 4);

// Writes a box into the current node's block.
bool writeBox(const std::vector<double>& parameters);
