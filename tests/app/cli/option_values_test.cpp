#include "app/cli/option_values.h"

#include <gtest/gtest.h>

#include "app/drawing/text_decoding.h"
#include "platform/code_page.h"
#include "tests/support/code_page_setting.h"

namespace dxf2d {

namespace {

TEST(Normalized, LowersLettersAndTrimsBlanks) {
  EXPECT_EQ(normalized("  Top\t"), "top");
  EXPECT_EQ(normalized("a B"), "a b");
  EXPECT_EQ(normalized(" \t"), "");
  EXPECT_EQ(normalized(""), "");
}

TEST(ParseNumber, TakesWholeTextsOfFiniteNumbers) {
  EXPECT_EQ(parseNumber("-2.5e1"), -25.0);
  EXPECT_EQ(parseNumber("+3"), 3.0);
  for (const char* text : {"", "two", "1x", " 1", "+-1", "nan", "inf", "1e999"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
}

TEST(ParseCount, TakesWholeNumbersFromOne) {
  EXPECT_EQ(parseCount("010"), 10u);
  EXPECT_EQ(parseCount("4294967295"), 4294967295u);
  for (const char* text : {"", "0", "-1", "+1", "1.5", "4294967296"}) {
    EXPECT_EQ(parseCount(text), std::nullopt) << text;
  }
}

TEST(ParseCodePage, AgreesWithThePlugInAndThePreview) {
  const CodePageSetting restored(1252);
  for (unsigned page = 1; page < 66'000; ++page) {
    const bool isParsed = parseCodePage(std::to_string(page)).has_value();
    EXPECT_EQ(isParsed, isTextCodePage(page)) << page;
    EXPECT_EQ(isParsed, SetThreadCodePage(page)) << page;
  }
}

TEST(OneOf, FindsNamesInAnyCase) {
  const auto parse = oneOf<int>({{"one", 1}, {"two", 2}});
  EXPECT_EQ(parse("TWO "), 2);
  EXPECT_EQ(parse("three"), std::nullopt);
  EXPECT_EQ(parse(""), std::nullopt);
}

}  // namespace

}  // namespace dxf2d
