#include "ktscene/kt_locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/platform/numeric_locale.h"

namespace {

std::string printedHalf() {
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  return text;
}

}  // namespace

TEST(KtNumericLocale, PutsThePointInForceForAsLongAsItLives) {
  const NumericLocale german({"de_DE.UTF-8"});
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

TEST(KtNumericLocale, LeavesOtherThreadsAndTheProcessAlone) {
  const NumericLocale german({"de_DE.UTF-8"});
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  const KtNumericLocale point;
  std::string elsewhere;
  std::thread([&] { elsewhere = printedHalf(); }).join();
  EXPECT_EQ(elsewhere, "0,5");
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8");
}

TEST(KtNumericLocale, KeepsALocaleThatTheThreadHasOfItsOwn) {
  locale_t own = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
  ASSERT_NE(own, nullptr);
  locale_t before = uselocale(own);
  {
    const KtNumericLocale point;
    EXPECT_EQ(printedHalf(), "0.5");
  }
  EXPECT_EQ(uselocale(nullptr), own);
  EXPECT_EQ(printedHalf(), "0,5");
  uselocale(before);
  freelocale(own);
}
