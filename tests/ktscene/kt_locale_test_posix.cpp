#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <thread>

#include "ktscene/kt_locale.h"
#include "tests/platform/numeric_locale.h"

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

TEST(KtNumericLocale, LeavesOtherThreadsAndTheProcessAlone) {
  const NumericLocale german(kCommaLocales);
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  const KtNumericLocale point;
  std::string elsewhere;
  std::thread([&] { elsewhere = printedHalf(); }).join();
  EXPECT_EQ(elsewhere, "0,5");
  EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
}
