#include "platform/number_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/decimal_point.h"

inline namespace kt_platform {

namespace {

using dxf2d::decimalPoint;
using dxf2d::widenNumber;
using dxf2d::writeDecimalPoint;

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t kMillion = 1000000;
// Millionths of a value below this fit 63 bits.
constexpr double kExactLimit = 9.2e12;
// A product of a 53-bit significand and a million has 73 bits; shifted right by more than one bit
// beyond them it is below a half and rounds to 0.
constexpr int kVanishingShift = 74;

// "00", "01", ... "99" in a row.
template <typename Unit>
constexpr std::array<Unit, 200> kDigitPairs = [] {
  std::array<Unit, 200> pairs{};
  for (unsigned i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<Unit>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<Unit>('0' + i % 10);
  }
  return pairs;
}();

constexpr std::array<std::uint64_t, 20> kPowersOfTen = [] {
  std::array<std::uint64_t, 20> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) {
    powers[i] = powers[i - 1] * 10;
  }
  return powers;
}();

int digitCount(std::uint64_t number) {
  // 1233 / 4096 is log10(2) closely enough for 64 bits.
  const int guess = (static_cast<int>(std::bit_width(number | 1)) * 1233) >> 12;
  return guess + (number >= kPowersOfTen[static_cast<std::size_t>(guess)] ? 1 : 0);
}

template <typename Unit>
void writePair(std::uint64_t pair, Unit* text) {
  std::memcpy(text, &kDigitPairs<Unit>[2 * pair], 2 * sizeof(Unit));
}

template <typename Unit>
Unit* writeInteger(std::uint64_t number, Unit* text) {
  Unit* const end = text + (number == 0 ? 1 : digitCount(number));
  Unit* at = end;
  while (number >= 100) {
    at -= 2;
    writePair(number % 100, at);
    number /= 100;
  }
  if (number >= 10) {
    writePair(number, at - 2);
  } else {
    at[-1] = static_cast<Unit>('0' + number);
  }
  return end;
}

template <typename Unit>
Unit* writeSixDigits(std::uint64_t number, Unit* text) {
  writePair(number / 10000, text);
  writePair(number / 100 % 100, text + 2);
  writePair(number % 100, text + 4);
  return text + 6;
}

// The millionths in a magnitude below kExactLimit, rounded to nearest, ties to even. The magnitude
// is significand / 2^shift, so the remainder of the division is exact.
std::uint64_t millionths(double magnitude) {
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const auto exponent = static_cast<int>(bits >> 52);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
  const std::uint64_t significand = exponent == 0 ? fraction : fraction | std::uint64_t{1} << 52;
  const int shift = 1075 - (exponent == 0 ? 1 : exponent);
  if (shift > kVanishingShift) {
    return 0;
  }
  const Wide product = static_cast<Wide>(significand) * kMillion;
  const auto quotient = static_cast<std::uint64_t>(product >> shift);
  const Wide remainder = product & ((Wide{1} << shift) - 1);
  const Wide half = Wide{1} << (shift - 1);
  const bool up = remainder > half || (remainder == half && (quotient & 1) != 0);
  return quotient + (up ? 1 : 0);
}

std::size_t adopt(std::string_view printed, char* text) {
  std::memcpy(text, printed.data(), printed.size());
  return printed.size();
}

std::size_t adopt(std::string_view printed, char16_t* text) { return widenNumber(printed, text); }

// C libraries do not agree on the sign of what is not a number.
const char* nonFiniteText(double value) {
  const bool negative = std::signbit(value);
  if (std::isnan(value)) {
    return negative ? "-nan" : "nan";
  }
  return negative ? "-inf" : "inf";
}

// Values beyond 63 bits of millionths, which are rare, are left to the C library.
template <typename Unit>
std::size_t formatByLibrary(double value, Unit* text) {
  if (!std::isfinite(value)) {
    const char* const printed = nonFiniteText(value);
    return static_cast<std::size_t>(std::copy_n(printed, std::strlen(printed), text) - text);
  }
  char printed[kFixed6Size + 1];
  const int size = std::snprintf(printed, sizeof printed, "%f", value);
  return adopt({printed, static_cast<std::size_t>(size)}, text);
}

template <typename Unit>
std::size_t format(double value, Unit* text) {
  const double magnitude = std::fabs(value);
  if (!(magnitude < kExactLimit)) {
    return formatByLibrary(value, text);
  }
  Unit* at = text;
  if (std::signbit(value)) {
    *at++ = Unit{'-'};
  }
  const std::uint64_t total = millionths(magnitude);
  const std::uint64_t whole = total / kMillion;
  at = writeInteger(whole, at);
  const char* point = decimalPoint();
  if (point[0] == '.' && point[1] == '\0') {
    *at++ = Unit{'.'};
  } else {
    at += writeDecimalPoint(at);
  }
  at = writeSixDigits(total - whole * kMillion, at);
  return static_cast<std::size_t>(at - text);
}

}  // namespace

std::size_t formatFixed6(double value, char16_t* text) { return format(value, text); }

std::size_t formatFixed6(double value, char* text) { return format(value, text); }

}  // namespace kt_platform
