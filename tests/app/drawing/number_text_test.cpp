#include "app/drawing/number_text.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <random>
#include <string>

namespace dxf2d {
namespace {

// Digits with a point somewhere, short and long ones.
std::string randomDecimal(std::mt19937& random) {
  std::string text = random() % 3 == 0 ? "-" : "";
  const unsigned digits = 1 + static_cast<unsigned>(random() % 20);
  const unsigned point = static_cast<unsigned>(random() % (digits + 1));
  for (unsigned i = 0; i < digits; ++i) {
    if (i == point) {
      text += '.';
    }
    text += static_cast<char>('0' + random() % 10);
  }
  return text;
}

TEST(ParseReal, RoundsAsTheStandardLibraryDoes) {
  std::mt19937 random(1);
  for (int i = 0; i < 200'000; ++i) {
    const std::string text = randomDecimal(random);
    double expected = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    const std::optional<double> value = parseReal(text);
    ASSERT_TRUE(value) << text;
    ASSERT_EQ(*value, expected) << text;
    ASSERT_EQ(std::signbit(*value), std::signbit(expected)) << text;
  }
}

TEST(ParseReal, TakesExponentsAndBlanks) {
  EXPECT_EQ(parseReal(" 1.5e3\t"), 1500.0);
  EXPECT_EQ(parseReal("  7"), 7.0);
  EXPECT_EQ(parseReal("0.000000"), 0.0);
  EXPECT_TRUE(std::signbit(*parseReal("-0.000000")));
}

TEST(ParseReal, RefusesWhatIsNoNumber) {
  for (const char* text :
       {"", "-", ".", "-.", "1.5x", "1,5", "1.2.3", "+1.5", "1.5 6", "0x10", "--1.0"}) {
    EXPECT_FALSE(parseReal(text)) << text;
  }
}

TEST(ParseInteger, TakesWholeNumbersAlone) {
  EXPECT_EQ(parseInteger("7"), 7);
  EXPECT_EQ(parseInteger(" -70 "), -70);
  EXPECT_EQ(parseInteger("2147483647"), 2147483647);
  for (const char* text : {"", " ", "x", "1.0", "7x", "2147483648"}) {
    EXPECT_FALSE(parseInteger(text)) << text;
  }
}

}  // namespace
}  // namespace dxf2d
