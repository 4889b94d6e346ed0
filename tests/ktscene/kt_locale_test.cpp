#include "ktscene/kt_locale.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/platform/numeric_locale.h"

namespace {

std::string printedHalf() {
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  return text;
}

}  // namespace

TEST(KtNumericLocale, PutsThePointInForceForAsLongAsItLives) {
  const NumericLocale german(kCommaLocales);
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  EXPECT_EQ(printedHalf(), "0,5");
  {
    const KtNumericLocale point;
    EXPECT_EQ(printedHalf(), "0.5");
    const KtNumericLocale inner;
    EXPECT_EQ(printedHalf(), "0.5");
  }
  EXPECT_EQ(printedHalf(), "0,5");
}
