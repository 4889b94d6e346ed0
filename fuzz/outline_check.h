// One outline against its reference implementation.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "fuzz/geometry_input.h"
#include "fuzz/require.h"
#include "geometry/outline/outline.h"
#include "ktscene/kt_point3.h"

namespace dxf2d {

struct OutlineInput {
  KtMatrix transform;
  std::vector<double> coords;
  std::vector<int> indices;

  // The reference implementations are of second order and more; this many entries keep them below a
  // millisecond.
  explicit OutlineInput(FuzzedDataProvider& data)
      : transform(takeMatrix(data)),
        coords(takeCoords(data, 40)),
        indices(takeIndices(data, coords.size() / 3, 400)) {}

  std::vector<KtPoint3> Points() const {
    std::vector<KtPoint3> points;
    for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
      points.emplace_back(coords[i], coords[i + 1], coords[i + 2]).Mult(transform);
    }
    return points;
  }
};

struct OutlineResult {
  bool drawn = false;
  std::vector<KtPoint3> points;
  std::vector<int> indices;
};

inline void requireSame(const OutlineResult& reference, const OutlineResult& fast) {
  require(reference.drawn == fast.drawn, "both implementations draw the set, or neither does");
  if (!reference.drawn) {
    return;
  }
  require(reference.indices == fast.indices, "both implementations have the same chains");
  require(reference.points.size() == fast.points.size(),
          "both implementations keep as many points");
  for (std::size_t i = 0; i < reference.points.size(); ++i) {
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    const KtPoint3& p = reference.points[i];
    const KtPoint3& q = fast.points[i];
    require(bits(p.Get0()) == bits(q.Get0()) && bits(p.Get1()) == bits(q.Get1()) &&
                bits(p.Get2()) == bits(q.Get2()),
            "both implementations keep the same points");
  }
}

// Runs `reference` and `fast` on the input's points, and `placed` on its coordinates; all three
// have to agree. `reference` and `fast` take (points, indices), `placed` takes (placed coordinates,
// points, indices).
template <class Reference, class Fast, class Placed>
void checkOutline(const OutlineInput& input, Reference reference, Fast fast, Placed placed) {
  OutlineResult expected{false, input.Points(), input.indices};
  expected.drawn = reference(expected.points, expected.indices);
  OutlineResult result{false, input.Points(), input.indices};
  result.drawn = fast(result.points, result.indices);
  requireSame(expected, result);
  result = {false, {}, input.indices};
  result.drawn = placed(PlacedCoords{input.coords, input.transform}, result.points, result.indices);
  requireSame(expected, result);
}

}  // namespace dxf2d
