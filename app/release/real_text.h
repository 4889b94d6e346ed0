// Decimal text of reals, as short as it can be without changing the number.
#pragma once

#include <cstddef>

namespace dxf2d::release {

// Room that formatReal needs for any finite double.
inline constexpr std::size_t kRealTextSize = 400;

// Writes the shortest decimal text that reads back as `value`, without an exponent and with a
// decimal point and a digit after it, whatever the locale. Returns its length; no terminating null.
// `value` must be finite.
std::size_t formatReal(double value, char* text);

}  // namespace dxf2d::release
