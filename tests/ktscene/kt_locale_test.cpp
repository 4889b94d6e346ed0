#include "ktscene/kt_locale.h"

#include <gtest/gtest.h>

#include "tests/platform/numeric_locale.h"

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
