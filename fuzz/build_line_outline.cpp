// BuildLineOutline against its reference implementation.
#include "fuzz/outline_check.h"
#include "tests/geometry/outline/reference_outline.h"

namespace dxf2d {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const OutlineInput input(data);
  checkOutline(
      input, [](auto& points, auto& indices) { return referenceLineOutline(points, indices); },
      [](auto& points, auto& indices) { return BuildLineOutline(points, indices); },
      [](const PlacedCoords& placed, auto& points, auto& indices) {
        return BuildLineOutline(placed, indices, points, indices);
      });
  return 0;
}

}  // namespace dxf2d
