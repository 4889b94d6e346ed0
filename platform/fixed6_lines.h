// Decimal text, one line a number, for thousands of reals at a few nanoseconds each.
#pragma once

#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/number_format.h"

namespace dxf2d {

// Makes the text that formatFixed6 gives, and a line feed, of up to kMost reals at a time: put the
// reals in place with Value, call Make, and write out the lines.
//
// The decimal separator is the one in force when the object is made. A host may change its locale
// between two callbacks, so an object must not outlive one.
class Fixed6Lines {
 public:
  static constexpr std::size_t kMost = 64;
  // Room that Write needs.
  static constexpr std::size_t kLineSize = kFixed6Size + 1;

  Fixed6Lines();

  // False in the rare locales whose separator is not an ASCII character; this class does not make
  // such lines.
  bool IsAscii() const { return separator_ != kNotAscii; }

  // The place of value i, which is below kMost.
  double& Value(std::size_t i) {
    assert(i < kMost);
    return values_[i];
  }
  // Makes the lines of the first `count` values, at most kMost.
  void Make(std::size_t count);

  // Writes the line of value i, one that Make has made, and returns its end. What follows it in the
  // room may be overwritten.
  char* Write(std::size_t i, char* text) const {
    assert(i < kMost);
    if (!(doubts_[i] < kDoubtful)) {
      return WriteAlone(i, text);
    }
    *text = '-';
    text += std::signbit(values_[i]) ? 1 : 0;
    // Sixteen bytes whatever the length: a copy of fixed size is two instructions.
    const auto zeros = static_cast<std::size_t>(leadingZeros_[i]);
    std::memcpy(text, texts_.data() + i * kTextSize + zeros, kTextSize);
    return text + (kTextSize - zeros);
  }

  // Writes the line of 0.
  char* WriteZero(char* text) const {
    constexpr char kZero[] = "0_000000\n";
    std::memcpy(text, kZero, sizeof kZero - 1);
    text[1] = separator_;
    return text + (sizeof kZero - 1);
  }

 private:
  // Eight digits, the separator, six digits, the line feed.
  static constexpr std::size_t kTextSize = 16;
  // Values are made so many at a time, in loops that the compiler turns into vector instructions.
  static constexpr std::size_t kBlock = 8;
  static_assert(kMost % kBlock == 0);
  static constexpr char kNotAscii = '\0';
  // A doubt from here on, or a NaN: the value is too large, not finite or so near to a tie that it
  // is made alone.
  static constexpr double kDoubtful = 0.5 - 1e-9;

  void MakeBlock(std::size_t begin);
  char* WriteAlone(std::size_t i, char* text) const;

  std::array<double, kMost> values_;
  // How far the rounded millionths are from the exact ones.
  std::array<double, kMost> doubts_;
  // Of the eight digits before the separator, those that are not written.
  std::array<std::int32_t, kMost> leadingZeros_;
  // The last copy reads beyond the last text.
  std::array<char, (kMost + 1) * kTextSize> texts_;
  // The texts of a block of zeros.
  std::array<char, kBlock * kTextSize> zeros_;
  char separator_;
};

}  // namespace dxf2d
