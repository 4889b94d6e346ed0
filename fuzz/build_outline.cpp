// BuildOutline against its reference implementation.
#include "fuzz/outline_check.h"
#include "tests/geometry/outline/reference_outline.h"

namespace dxf2d {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool reverse = data.ConsumeBool();
  const bool closed = data.ConsumeBool();
  const OutlineInput input(data);
  checkOutline(
      input,
      [&](auto& points, auto& indices) {
        return referenceOutline(points, indices, reverse, closed);
      },
      [&](auto& points, auto& indices) { return BuildOutline(points, indices, reverse, closed); },
      [&](const PlacedCoords& placed, auto& points, auto& indices) {
        return BuildOutline(placed, indices, points, indices, reverse, closed);
      });
  return 0;
}

}  // namespace dxf2d
