#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "platform/locale.h"

TEST(Wsetlocale, LongNameOfAMixedLocaleRestoresIt) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "de_DE.UTF-8 is not installed.";
  }
  EXPECT_NE(_wsetlocale(LC_NUMERIC, u"C"), nullptr);
  const std::u16string mixed = _wsetlocale(LC_ALL, nullptr);
  EXPECT_GT(mixed.size(), 256U);
  EXPECT_NE(_wsetlocale(LC_ALL, u"C"), nullptr);
  EXPECT_EQ(std::u16string(_wsetlocale(LC_ALL, mixed.c_str())), mixed);
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
  EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "de_DE.UTF-8");
  std::setlocale(LC_ALL, before.c_str());
}
