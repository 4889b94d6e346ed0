// The texts are made in steps that each do the same to all values of a block. No step has a branch
// or a table, so the compiler can vectorize it, and no value depends on the one before it.
#include "platform/fixed6_lines.h"

#include <algorithm>

#include "platform/decimal_point.h"

namespace dxf2d {

namespace {

// A larger value may have nine digits before the separator once it is rounded.
constexpr double kLargest = 99'999'999.0;
constexpr std::int32_t kMillion = 1'000'000;

// Splits each number in two: what it is divided by kDivisor, and the rest.
template <unsigned kDivisor, typename Number, typename Half, std::size_t kCount>
void halve(const std::array<Number, kCount>& numbers, std::array<Half, 2 * kCount>& halves) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const auto first = static_cast<Number>(numbers[i] / kDivisor);
    halves[2 * i] = static_cast<Half>(first);
    halves[2 * i + 1] = static_cast<Half>(numbers[i] - first * kDivisor);
  }
}

// How many of the eight digits of `number` are zeros at the front; the last digit does not count.
std::int32_t leadingZerosOf(std::int32_t number) {
  return (number < 10) + (number < 100) + (number < 1000) + (number < 10000) + (number < 100000) +
         (number < 1000000) + (number < 10000000);
}

}  // namespace

Fixed6Lines::Fixed6Lines() {
  const char* point = decimalPoint();
  const bool isAscii =
      point[0] != '\0' && static_cast<unsigned char>(point[0]) < 0x80 && point[1] == '\0';
  separator_ = isAscii ? point[0] : kNotAscii;
  zeros_.fill('0');
  for (std::size_t end = kTextSize; end <= zeros_.size(); end += kTextSize) {
    zeros_[end - 8] = separator_;
    zeros_[end - 1] = '\n';
  }
}

void Fixed6Lines::Make(std::size_t count) {
  assert(count <= kMost);
  for (std::size_t begin = 0; begin < count; begin += kBlock) {
    std::fill(values_.begin() + std::min(count, begin + kBlock), values_.begin() + begin + kBlock,
              0.0);
    MakeBlock(begin);
  }
}

void Fixed6Lines::MakeBlock(std::size_t begin) {
  std::array<double, kBlock> bounded;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const double magnitude = std::fabs(values_[begin + i]);
    // A NaN fails the comparison and is bounded too.
    bounded[i] = magnitude < kLargest ? magnitude : kLargest;
  }
  std::array<std::int32_t, kBlock> wholes;
  for (std::size_t i = 0; i < kBlock; ++i) {
    wholes[i] = static_cast<std::int32_t>(bounded[i]);
  }
  std::array<double, kBlock> exact;
  for (std::size_t i = 0; i < kBlock; ++i) {
    exact[i] = (bounded[i] - wholes[i]) * kMillion;
  }
  std::array<std::int32_t, kBlock> millionths;
  for (std::size_t i = 0; i < kBlock; ++i) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): where it is, the doubt is large.
    millionths[i] = static_cast<std::int32_t>(exact[i] + 0.5);
  }
  // The difference of magnitude and whole is exact, and its product with a million is off by less
  // than 1e-9. So when that is nearer to the millionths than a half less 1e-9, they are the nearest
  // to the value itself. A magnitude that is beyond the bound is so by 1e-8 at least.
  for (std::size_t i = 0; i < kBlock; ++i) {
    const double excess = std::fabs(values_[begin + i]) - bounded[i];
    doubts_[begin + i] = std::fabs(exact[i] - millionths[i]) + excess * 1e9;
  }
  for (std::size_t i = 0; i < kBlock; ++i) {
    const std::int32_t carry = millionths[i] == kMillion ? 1 : 0;
    wholes[i] += carry;
    millionths[i] -= carry * kMillion;
  }
  for (std::size_t i = 0; i < kBlock; ++i) {
    leadingZeros_[begin + i] = leadingZerosOf(wholes[i]);
  }
  std::array<std::uint32_t, 2 * kBlock> numbers;
  for (std::size_t i = 0; i < kBlock; ++i) {
    numbers[2 * i] = static_cast<std::uint32_t>(wholes[i]);
    // One zero in front, where the separator goes, and one behind, where the line ends.
    numbers[2 * i + 1] = 10 * static_cast<std::uint32_t>(millionths[i]);
  }
  std::array<std::uint16_t, 4 * kBlock> fours;
  halve<10000>(numbers, fours);
  std::array<std::uint16_t, 8 * kBlock> pairs;
  halve<100>(fours, pairs);
  std::array<std::uint8_t, 16 * kBlock> digits;
  halve<10>(pairs, digits);
  char* const texts = texts_.data() + begin * kTextSize;
  for (std::size_t k = 0; k < digits.size(); ++k) {
    texts[k] = static_cast<char>(zeros_[k] + digits[k]);
  }
}

char* Fixed6Lines::WriteAlone(std::size_t i, char* text) const {
  text += formatFixed6(values_[i], text);
  *text = '\n';
  return text + 1;
}

}  // namespace dxf2d
