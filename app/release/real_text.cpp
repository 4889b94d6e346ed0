#include "app/release/real_text.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace dxf2d::release {

namespace {

constexpr double kMillion = 1e6;

// Writes `digits`, which is not negative, in the decimal system and returns the end.
char* writeWhole(std::int64_t digits, char* text) {
  return std::to_chars(text, text + 20, digits).ptr;
}

// Writes the six decimals of `millionths` without the zeros at their end, but one digit at least.
char* writeDecimals(std::int64_t millionths, char* text) {
  constexpr int kDecimals = 6;
  for (int i = kDecimals - 1; i >= 0; --i) {
    text[i] = static_cast<char>('0' + millionths % 10);
    millionths /= 10;
  }
  int count = kDecimals;
  while (count > 1 && text[count - 1] == '0') {
    --count;
  }
  return text + count;
}

}  // namespace

std::size_t formatReal(double value, char* text) {
  assert(std::isfinite(value));
  // A number of up to 15 digits is the only such number that reads as its double. Coordinates of
  // drawings have six decimals, so this way is taken nearly always.
  constexpr double kMostMillionths = 1e15;
  const double scaled = std::abs(value) * kMillion;
  if (scaled < kMostMillionths) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): the next line tests whether it is right.
    const auto millionths = static_cast<std::int64_t>(scaled + 0.5);
    if (static_cast<double>(millionths) / kMillion == std::abs(value)) {
      char* end = text;
      if (value < 0.0) {
        *end++ = '-';
      }
      constexpr auto kUnit = static_cast<std::int64_t>(kMillion);
      end = writeWhole(millionths / kUnit, end);
      *end++ = '.';
      end = writeDecimals(millionths % kUnit, end);
      return static_cast<std::size_t>(end - text);
    }
  }
  char* end = std::to_chars(text, text + kRealTextSize, value, std::chars_format::fixed).ptr;
  if (std::find(text, end, '.') == end) {
    *end++ = '.';
    *end++ = '0';
  }
  return static_cast<std::size_t>(end - text);
}

}  // namespace dxf2d::release
