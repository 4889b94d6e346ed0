// What an INSERT of a drawing carries of a transform, and what is left for the vertices.
#pragma once

#include <array>

#include "app/model/affine.h"
#include "ktscene/kt_matrix.h"

namespace dxf2d {

// A turn about z, counter-clockwise, and then a shift.
struct PlanPlacement {
  double cosine = 1.0;
  double sine = 0.0;
  std::array<double, 3> shift{};

  // True when the turn maps the directions of the sheet's axes onto each other.
  bool KeepsAxes() const { return cosine == 0.0 || sine == 0.0; }
  // The same as a node's matrix.
  KtMatrix Matrix() const;
};

struct SplitTransform {
  // Tilt, scale, mirroring and shear; by rows, as Affine::linear.
  std::array<double, 9> residual{};
  PlanPlacement placement;
};

// Splits a transform so that it equals `residual`, then the placement. The turn is that of the x
// axis's image in plan, of the y axis where that has no length in plan, or else of the z axis; so
// all transforms that differ only by a turn and a shift have the same residual. Turns by right
// angles are exact. A turn that is too small for an INSERT to carry stays in the residual.
SplitTransform splitTransform(const Affine& world);

// True when two residual transforms differ by less than what single precision can tell, so that one
// block serves for both.
bool residualsAgree(const std::array<double, 9>& a, const std::array<double, 9>& b);

// How far apart elements of residual transforms that agree may be, for a residual like `residual`.
double residualTolerance(const std::array<double, 9>& residual);

}  // namespace dxf2d
