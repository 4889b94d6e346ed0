// The decimal separator of the LC_NUMERIC locale, narrow and wide. Internal to this library.
#pragma once

#include <cstddef>
#include <string_view>

namespace dxf2d {

// The separator as printf writes it, in the character set of the LC_NUMERIC locale; valid until the
// locale changes.
const char* decimalPoint();

// Room for a separator in either form.
inline constexpr std::size_t kDecimalPointSize = 8;

// Writes the separator without a terminating null and returns its length, at most
// kDecimalPointSize.
std::size_t writeDecimalPoint(char* text);
std::size_t writeDecimalPoint(char16_t* text);

// Turns what printf wrote for a number into UTF-16 and returns the number of units, at most
// `printed.size()`. All of it is ASCII but, in some locales, the separator.
std::size_t widenNumber(std::string_view printed, char16_t* wide);

}  // namespace dxf2d
