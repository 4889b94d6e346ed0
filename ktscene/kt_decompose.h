// Splits a transform into what a placement in a drawing carries and the rest.
#pragma once

#include "ktscene/export.h"
#include "ktscene/kt_matrix.h"

// The two parts of a transform.
struct KtDecomposition {
  // A rotation about z and a translation: the matrix of an object's node.
  KtMatrix placement;
  // Tilt, scale, mirroring and shear, without a translation: for the vertices, or for the matrix of
  // a child without ids.
  KtMatrix residual;
};

// Splits `matrix` so that it equals `residual` first, then `placement`, except for rounding. The
// rotation is that of the image of the x axis in plan, of the y axis if the former has no length in
// plan, or else of the z axis; so all matrices that differ only by a placement have one residual,
// and one drawing of it serves for all of them. Rotations by right angles are exact. A rotation of
// at most 0.001 radians, which placements do not carry, stays in the residual.
KT_SCENE_API KtDecomposition KtDecompose(const KtMatrix& matrix);
