// BuildLineOutline against its plain form.
#include "fuzz/outline_check.h"
#include "tests/geometry/plain_outline.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const OutlineInput input(data);
  checkOutline(
      input, [](auto& points, auto& indices) { return plainLineOutline(points, indices); },
      [](auto& points, auto& indices) { return BuildLineOutline(points, indices); },
      [](const PlacedCoords& placed, auto& points, auto& indices) {
        return BuildLineOutline(placed, indices, points, indices);
      });
  return 0;
}
