#include "app/release/real_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace dxf2d::release {
namespace {

std::string text(double value) {
  char room[kRealTextSize];
  return {room, formatReal(value, room)};
}

TEST(RealText, WholeNumbersHaveOneDecimal) {
  EXPECT_EQ(text(0.0), "0.0");
  EXPECT_EQ(text(42.0), "42.0");
  EXPECT_EQ(text(-7.0), "-7.0");
}

TEST(RealText, ZeroHasNoSign) { EXPECT_EQ(text(-0.0), "0.0"); }

TEST(RealText, ZerosAtTheEndAreLeftOut) {
  EXPECT_EQ(text(1.5), "1.5");
  EXPECT_EQ(text(-0.000001), "-0.000001");
  EXPECT_EQ(text(1234567.890120), "1234567.89012");
}

TEST(RealText, MoreDecimalsAreKept) {
  EXPECT_EQ(text(0.1234567), "0.1234567");
  EXPECT_EQ(text(1.0 / 3.0), "0.3333333333333333");
}

TEST(RealText, NoExponentHoweverLargeOrSmall) {
  EXPECT_EQ(text(1e22), "10000000000000000000000.0");
  EXPECT_EQ(text(1e-7), "0.0000001");
  for (const double value : {std::numeric_limits<double>::max(), -5e-324}) {
    EXPECT_EQ(text(value).find('e'), std::string::npos);
    EXPECT_EQ(std::stod(text(1e300)), 1e300);
  }
}

TEST(RealText, EveryDoubleReadsBackAsItself) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 20'000; ++i) {
    const auto value = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
    if (std::isfinite(value) && std::abs(value) > 1e-300) {
      EXPECT_EQ(std::stod(text(value)), value);
    }
  }
}

TEST(RealText, EverySixDecimalNumberIsAsShortAsItsDigits) {
  std::mt19937_64 random(8);
  for (int i = 0; i < 20'000; ++i) {
    const auto millionths = static_cast<std::int64_t>(random() % 1'000'000'000'000);
    const double value = static_cast<double>(millionths) / 1e6;
    const std::string shown = text(value);
    EXPECT_EQ(std::stod(shown), value);
    EXPECT_LE(shown.size() - shown.find('.'), 7U) << shown;
  }
}

}  // namespace
}  // namespace dxf2d::release
