// BuildOutline against its plain form.
#include "fuzz/outline_check.h"
#include "tests/geometry/plain_outline.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool reverse = data.ConsumeBool();
  const bool closed = data.ConsumeBool();
  const OutlineInput input(data);
  checkOutline(
      input,
      [&](auto& points, auto& indices) { return plainOutline(points, indices, reverse, closed); },
      [&](auto& points, auto& indices) { return BuildOutline(points, indices, reverse, closed); },
      [&](const PlacedCoords& placed, auto& points, auto& indices) {
        return BuildOutline(placed, indices, points, indices, reverse, closed);
      });
  return 0;
}
