#include "platform/number_format.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "numeric_locale.h"

namespace {

std::string fixed6(double value) {
  char text[kFixed6Size];
  return {text, formatFixed6(value, text)};
}

std::u16string wideFixed6(double value) {
  char16_t text[kFixed6Size];
  return {text, formatFixed6(value, text)};
}

std::string printed(double value) {
  char text[400];
  return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%f", value))};
}

std::u16string widened(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

void expectAsPrintf(double value) {
  // The sign of what is not a number is printf's own.
  if (std::isnan(value)) {
    return;
  }
  for (const double sign : {1.0, -1.0}) {
    const double number = sign * value;
    const std::string expected = printed(number);
    ASSERT_EQ(fixed6(number), expected) << std::hexfloat << number;
    ASSERT_EQ(wideFixed6(number), widened(expected)) << std::hexfloat << number;
  }
}

// A value and its two neighbors, where rounding turns over when the value is a tie.
void expectAroundAsPrintf(double value) {
  expectAsPrintf(value);
  expectAsPrintf(std::nextafter(value, 0.0));
  expectAsPrintf(std::nextafter(value, std::numeric_limits<double>::infinity()));
}

}  // namespace

TEST(FormatFixed6, UsualValues) {
  EXPECT_EQ(fixed6(-100.0), "-100.000000");
  EXPECT_EQ(fixed6(0.15), "0.150000");
  EXPECT_EQ(fixed6(25.4), "25.400000");
  EXPECT_EQ(fixed6(410), "410.000000");
  EXPECT_EQ(fixed6(9999999.999999), "9999999.999999");
  EXPECT_EQ(fixed6(0.9999999), "1.000000");
}

TEST(FormatFixed6, NegativeZeroAndWhatRoundsToItKeepTheSign) {
  EXPECT_EQ(fixed6(0.0), "0.000000");
  EXPECT_EQ(fixed6(-0.0), "-0.000000");
  EXPECT_EQ(fixed6(-4e-7), "-0.000000");
  EXPECT_EQ(fixed6(-std::numeric_limits<double>::denorm_min()), "-0.000000");
}

TEST(FormatFixed6, ExactTiesGoToTheEvenDigit) {
  EXPECT_EQ(fixed6(1.0 / 128), "0.007812");
  EXPECT_EQ(fixed6(3.0 / 128), "0.023438");
  EXPECT_EQ(fixed6(4096 + 1.0 / 128), "4096.007812");
}

TEST(FormatFixed6, NonFiniteValuesAreThePrintfWords) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(fixed6(kInfinity), "inf");
  EXPECT_EQ(fixed6(-kInfinity), "-inf");
  EXPECT_EQ(fixed6(std::copysign(kNan, 1.0)), "nan");
  EXPECT_EQ(fixed6(std::copysign(kNan, -1.0)), "-nan");
  EXPECT_EQ(wideFixed6(-kInfinity), u"-inf");
}

TEST(FormatFixed6, HugeValuesAreWhole) {
  expectAsPrintf(std::numeric_limits<double>::max());
  expectAsPrintf(1e300);
  EXPECT_LE(fixed6(-std::numeric_limits<double>::max()).size(), kFixed6Size);
}

TEST(FormatFixed6, EqualsPrintfAroundPowersOfTenAndTwo) {
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    expectAroundAsPrintf(std::ldexp(1.0, exponent));
  }
  for (int exponent = -20; exponent <= 308; ++exponent) {
    const double power = std::pow(10.0, exponent);
    expectAroundAsPrintf(power);
    expectAroundAsPrintf(power - 5e-7);
  }
}

TEST(FormatFixed6, EqualsPrintfWhereTheExactRangeEnds) {
  for (const double limit : {9.2e12, 9223372036854.775807, 18446744073709.551615, 0x1p53, 0x1p63}) {
    expectAroundAsPrintf(limit);
    expectAroundAsPrintf(limit - 1);
    expectAroundAsPrintf(limit + 1);
  }
}

TEST(FormatFixed6, EqualsPrintfOnExactTiesAndTheirNeighbors) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    // An odd multiple of 2^-7 ends in a 5 at the seventh digit.
    const auto odd = static_cast<double>((random() >> (24 + random() % 38)) | 1);
    expectAroundAsPrintf(odd / 128);
  }
}

TEST(FormatFixed6, EqualsPrintfNextToDecimalTies) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 20000; ++i) {
    const auto count = static_cast<double>(random() >> (21 + random() % 43));
    expectAroundAsPrintf((count + 0.5) * 1e-6);
  }
}

TEST(FormatFixed6, EqualsPrintfOnDyadicFractions) {
  std::mt19937_64 random(4);
  for (int i = 0; i < 50000; ++i) {
    const auto numerator = static_cast<double>(random() >> (11 + random() % 53));
    expectAroundAsPrintf(std::ldexp(numerator, -static_cast<int>(random() % 80)));
  }
}

TEST(FormatFixed6, EqualsPrintfOnUsualCoordinates) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 200000; ++i) {
    const double unit = static_cast<double>(random() >> 11) * 0x1p-53;
    expectAsPrintf(unit * std::pow(10.0, static_cast<double>(random() % 13)));
    expectAsPrintf(static_cast<double>(random() % 10000000) / 1000);
  }
}

TEST(FormatFixed6, EqualsPrintfOnAnyBits) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 100000; ++i) {
    expectAsPrintf(std::bit_cast<double>(random()));
    // Subnormal numbers too, which random exponents seldom meet.
    expectAsPrintf(std::bit_cast<double>(random() >> 12));
  }
}

TEST(FormatFixed6, CommaLocaleGivesAComma) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  EXPECT_EQ(fixed6(-2.5), "-2,500000");
  EXPECT_EQ(wideFixed6(-2.5), u"-2,500000");
  EXPECT_EQ(fixed6(1e20), "100000000000000000000,000000");
  EXPECT_EQ(wideFixed6(1e20), u"100000000000000000000,000000");
}

TEST(FormatFixed6, SeparatorOfSeveralBytesIsThatOfTheLocale) {
  const NumericLocale locale(kWideSeparatorLocales);
  if (!locale.HasWideSeparator()) {
    GTEST_SKIP() << "No locale with such a separator is installed.";
  }
  EXPECT_EQ(fixed6(2.5),
            "2\xD9\xAB"
            "500000");
  EXPECT_EQ(wideFixed6(2.5), u"2\u066B500000");
  EXPECT_EQ(fixed6(-1e20), printed(-1e20));
  EXPECT_EQ(wideFixed6(1e20), u"100000000000000000000\u066B000000");
}
