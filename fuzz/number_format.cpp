// formatFixed6 against the C library's "%f".
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/require.h"
#include "platform/number_format.h"

namespace {

void checkNumber(double value) {
  char expected[kFixed6Size + 1];
  const int length = std::snprintf(expected, sizeof expected, "%f", value);
  const std::string wanted(expected, static_cast<std::size_t>(length));

  char narrow[kFixed6Size];
  require(std::string(narrow, formatFixed6(value, narrow)) == wanted, "bytes as \"%f\" has them");
  char16_t wide[kFixed6Size];
  const std::u16string units(wide, formatFixed6(value, wide));
  require(units == std::u16string(wanted.begin(), wanted.end()), "units as \"%f\" has them");
}

void checkWithNeighbors(double value) {
  checkNumber(value);
  checkNumber(-value);
  checkNumber(std::nextafter(value, HUGE_VAL));
  checkNumber(std::nextafter(value, -HUGE_VAL));
}

// What the eight bytes mean: any double, and numbers about the places where rounding turns.
void checkWord(std::uint64_t word) {
  checkNumber(std::bit_cast<double>(word));
  const auto number = static_cast<double>(word >> 11U);
  // Odd multiples of 1/128, and no other doubles, lie exactly between two millionths.
  checkWithNeighbors(number / 128.0);
  // The doubles nearest to half a millionth more than a multiple of one.
  const double wholes = std::floor(number / static_cast<double>(1U << (word % 32)));
  checkWithNeighbors((wholes + 0.5) * 1e-6);
  checkWithNeighbors((wholes + 0.5) / 1e6);
  // A power of ten, near which the count of digits changes.
  checkWithNeighbors(std::pow(10.0, static_cast<double>(word % 40) - 10.0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  for (std::size_t at = 0; at + sizeof(std::uint64_t) <= size; at += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + at, sizeof word);
    checkWord(word);
  }
  return 0;
}
