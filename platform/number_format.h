// Decimal text of reals, exactly as the C library's "%f" prints it, in tens of nanoseconds.
#pragma once

#include <cstddef>

#include "platform/export.h"

inline namespace kt_platform {

// Room that formatFixed6 needs for any double: sign, 309 digits, separator (up to 4 units), six
// digits.
inline constexpr std::size_t kFixed6Size = 328;

// Writes `value` with six decimals, correctly rounded (ties to even on the exact binary value), and
// returns the number of characters; no terminating null. Values that are not finite are "inf",
// "nan" and the same with a "-". The decimal separator is that of the process's LC_NUMERIC locale
// at the call.
KT_PLATFORM_API std::size_t formatFixed6(double value, char16_t* text);
KT_PLATFORM_API std::size_t formatFixed6(double value, char* text);

}  // namespace kt_platform
