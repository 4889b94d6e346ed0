// Reals made many at a time against reals made one by one.
#include "platform/fixed6_lines.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "numeric_locale.h"

namespace {

using dxf2d::Fixed6Lines;

std::string madeTogether(const std::vector<double>& values) {
  Fixed6Lines lines;
  std::string text;
  for (std::size_t begin = 0; begin < values.size(); begin += Fixed6Lines::kMost) {
    const std::size_t count = std::min(values.size() - begin, Fixed6Lines::kMost);
    for (std::size_t i = 0; i < count; ++i) {
      lines.Value(i) = values[begin + i];
    }
    lines.Make(count);
    for (std::size_t i = 0; i < count; ++i) {
      char line[Fixed6Lines::kLineSize];
      text.append(line, lines.Write(i, line));
    }
  }
  return text;
}

std::string madeOneByOne(const std::vector<double>& values) {
  std::string text;
  for (const double value : values) {
    char real[kFixed6Size];
    text.append(real, formatFixed6(value, real));
    text += '\n';
  }
  return text;
}

void expectSame(const std::vector<double>& values) {
  ASSERT_EQ(madeTogether(values), madeOneByOne(values));
}

// Each value with both signs, and its neighbors.
std::vector<double> around(const std::vector<double>& values) {
  std::vector<double> all;
  for (const double value : values) {
    for (const double near : {value, std::nextafter(value, 0.0), std::nextafter(value, 1e308)}) {
      all.insert(all.end(), {near, -near});
    }
  }
  return all;
}

template <class Next>
std::vector<double> manyOf(std::size_t count, Next next) {
  std::vector<double> values(count);
  for (double& value : values) {
    value = next();
  }
  return values;
}

}  // namespace

TEST(Fixed6Lines, LineIsTheRealAndALineFeed) {
  EXPECT_EQ(madeTogether({-12.5, 0.0, 99999999.0}), "-12.500000\n0.000000\n99999999.000000\n");
}

TEST(Fixed6Lines, NegativeZeroAndWhatRoundsToItKeepTheSign) {
  EXPECT_EQ(madeTogether({-0.0, -4e-7, -std::numeric_limits<double>::denorm_min()}),
            "-0.000000\n-0.000000\n-0.000000\n");
}

TEST(Fixed6Lines, RoundingUpCarriesIntoTheWhole) {
  EXPECT_EQ(madeTogether({0.9999996, 9.9999999, -99999998.9999999}),
            "1.000000\n10.000000\n-99999999.000000\n");
}

TEST(Fixed6Lines, LineOfZeroIsThatOfTheValueZero) {
  char line[Fixed6Lines::kLineSize];
  EXPECT_EQ(std::string(line, Fixed6Lines().WriteZero(line)), madeOneByOne({0.0}));
}

TEST(Fixed6Lines, AnyCountOfValuesIsMade) {
  std::vector<double> values;
  for (std::size_t count = 1; count <= Fixed6Lines::kMost; ++count) {
    values.push_back(static_cast<double>(count) * 1.5);
    expectSame(values);
  }
}

TEST(Fixed6Lines, EachGroupOfDigitsIsRightWhateverItIs) {
  std::vector<double> values;
  for (int four = 0; four < 10000; ++four) {
    values.insert(values.end(), {four * 1.0, four * 10000.0 + 1234.0});
    // An odd multiple of 2^-20 is near no tie.
    values.push_back(std::ldexp(std::round(std::ldexp(four * 1e-4, 20)) + 0.25, -20));
    values.push_back(four * 1e-6 + 1e-7);
  }
  expectSame(values);
}

TEST(Fixed6Lines, EqualsFormatFixed6AroundPowersOfTenAndTwo) {
  std::vector<double> values;
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    values.push_back(std::ldexp(1.0, exponent));
  }
  for (int exponent = -20; exponent <= 308; ++exponent) {
    values.insert(values.end(), {std::pow(10.0, exponent), std::pow(10.0, exponent) - 5e-7});
  }
  expectSame(around(values));
}

TEST(Fixed6Lines, EqualsFormatFixed6WhereTheFastWayEnds) {
  constexpr double kLargest = 99999999.0;
  expectSame(around({kLargest, kLargest + 1.0, kLargest - 1.0, kLargest + 0.9999996,
                     kLargest - 5e-7, 2147483647.0, 2147483648.0, 4294967296.0, 1e300}));
}

TEST(Fixed6Lines, EqualsFormatFixed6OnValuesThatAreNotFinite) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectSame({kInfinity, -kInfinity, std::copysign(nan, 1.0), std::copysign(nan, -1.0), 1.0});
}

TEST(Fixed6Lines, EqualsFormatFixed6OnExactTiesAndTheirNeighbors) {
  std::mt19937_64 random(1);
  // An odd multiple of 2^-7 ends in a 5 at the seventh digit.
  expectSame(around(manyOf(
      20000, [&] { return static_cast<double>((random() >> (24 + random() % 38)) | 1) / 128; })));
}

TEST(Fixed6Lines, EqualsFormatFixed6NextToDecimalTies) {
  std::mt19937_64 random(2);
  expectSame(around(manyOf(20000, [&] {
    return (static_cast<double>(random() >> (17 + random() % 46)) + 0.5) * 1e-6;
  })));
}

TEST(Fixed6Lines, EqualsFormatFixed6WithinABillionthOfTies) {
  std::mt19937_64 random(3);
  expectSame(manyOf(50000, [&] {
    const double distance = 4e-9 * (static_cast<double>(random() >> 11) * 0x1p-53 - 0.5);
    return (static_cast<double>(random() % 100000000) + 0.5 + distance) * 1e-6;
  }));
}

TEST(Fixed6Lines, EqualsFormatFixed6OnUsualCoordinates) {
  std::mt19937_64 random(4);
  expectSame(manyOf(200000, [&] {
    const double unit = static_cast<double>(random() >> 11) * 0x1p-52 - 1.0;
    return unit * std::pow(10.0, static_cast<double>(random() % 10));
  }));
  expectSame(manyOf(100000, [&] { return static_cast<double>(random() % 10000000) / 1000; }));
}

TEST(Fixed6Lines, EqualsFormatFixed6OnAnyBits) {
  std::mt19937_64 random(5);
  expectSame(manyOf(100000, [&] { return std::bit_cast<double>(random()); }));
}

TEST(Fixed6Lines, CommaLocaleGivesAComma) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  EXPECT_EQ(madeTogether({-2.5, 1e20}), "-2,500000\n100000000000000000000,000000\n");
  char line[Fixed6Lines::kLineSize];
  EXPECT_EQ(std::string(line, Fixed6Lines().WriteZero(line)), "0,000000\n");
}

TEST(Fixed6Lines, SeparatorOfSeveralBytesIsNotAscii) {
  EXPECT_TRUE(Fixed6Lines().IsAscii());
  const NumericLocale locale(kWideSeparatorLocales);
  if (!locale.HasWideSeparator()) {
    GTEST_SKIP() << "No locale with such a separator is installed.";
  }
  EXPECT_FALSE(Fixed6Lines().IsAscii());
}

#ifndef NDEBUG
TEST(Fixed6LinesDeathTest, AssertsThatPositionsAreBelowItsRoom) {
  Fixed6Lines lines;
  char line[Fixed6Lines::kLineSize];
  EXPECT_DEATH(lines.Value(Fixed6Lines::kMost) = 1.0, "kMost");
  EXPECT_DEATH(lines.Write(Fixed6Lines::kMost, line), "kMost");
  EXPECT_DEATH(lines.Make(Fixed6Lines::kMost + 1), "kMost");
}
#endif
