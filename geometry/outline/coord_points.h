// Points of a list of coordinates.
#pragma once

#include <cstddef>
#include <vector>

#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

// Returns use(pointAt), where pointAt(i) is the i-th of `coords`, x, y, z triples, multiplied by
// `transform`; it refers to both.
template <class Use>
auto withCoordPoints(const std::vector<double>& coords, const KtMatrix& transform, Use use) {
  const double* const from = coords.data();
  if (transform.IsIdentity()) {
    // The usual case: a set in the coordinate system of its object. The sums turn -0 into 0, as the
    // product would.
    return use([from](std::size_t i) {
      return KtPoint3(from[3 * i] + 0.0, from[3 * i + 1] + 0.0, from[3 * i + 2] + 0.0);
    });
  }
  return use([from, &transform](std::size_t i) {
    KtPoint3 point(from[3 * i], from[3 * i + 1], from[3 * i + 2]);
    point.Mult(transform);
    return point;
  });
}

}  // namespace dxf2d
