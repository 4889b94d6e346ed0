#include "app/model/length_unit.h"

#include <gtest/gtest.h>

namespace dxf2d {
namespace {

TEST(ParseUnit, TakesTheFiveNamesInAnyLetterCase) {
  EXPECT_EQ(parseUnit("mm"), kMillimeter);
  EXPECT_EQ(parseUnit("cm"), kCentimeter);
  EXPECT_EQ(parseUnit("M"), kMeter);
  EXPECT_EQ(parseUnit("In"), kInch);
  EXPECT_EQ(parseUnit("FT"), kFoot);
}

TEST(ParseUnit, RefusesAnythingElse) {
  for (const char* name : {"", "km", "meter", "mm ", "m m"}) {
    EXPECT_FALSE(parseUnit(name)) << name;
  }
}

TEST(UnitName, IsAsOptionsSpellIt) {
  for (const LengthUnit unit : {kMillimeter, kCentimeter, kMeter, kInch, kFoot}) {
    EXPECT_EQ(parseUnit(unitName(unit)), unit);
  }
}

TEST(UnitName, OfAnOddUnitIsItsLength) {
  EXPECT_EQ(unitName({0.5}), "0.5 m");
  EXPECT_EQ(unitName({}), "unknown");
}

TEST(UnitName, ToleratesSinglePrecision) {
  EXPECT_EQ(unitName({static_cast<double>(2.54F) * 0.01}), "in");
}

TEST(ParseScale, TakesNumbersAndRatios) {
  EXPECT_EQ(parseScale("0.02"), 0.02);
  EXPECT_EQ(parseScale("1:50"), 0.02);
  EXPECT_EQ(parseScale("1/50"), 0.02);
  EXPECT_EQ(parseScale("2.5:1"), 2.5);
}

TEST(ParseScale, RefusesAnythingElse) {
  for (const char* text :
       {"", "0", "-1", "1:0", "1:-5", ":50", "1:", "1:5:2", "a", "inf", "nan", "1e300:1e-300"}) {
    EXPECT_FALSE(parseScale(text)) << text;
  }
}

}  // namespace
}  // namespace dxf2d
