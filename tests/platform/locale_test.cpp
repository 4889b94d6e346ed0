#include "platform/locale.h"

#include <gtest/gtest.h>

#include <string>

#include "numeric_locale.h"
#include "platform/cstring.h"

TEST(Wsetlocale, QueryNamesTheLocaleInForce) {
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, nullptr)), u"C");
}

TEST(Wsetlocale, UnknownLocaleIsNullAndChangesNothing) {
  EXPECT_EQ(_wsetlocale(LC_NUMERIC, u"xx_XX.none"), nullptr);
  EXPECT_EQ(_wsetlocale(LC_NUMERIC, u"Süd"), nullptr);
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, nullptr)), u"C");
}

TEST(Wsetlocale, UnknownCategoryIsNull) { EXPECT_EQ(_wsetlocale(12345, nullptr), nullptr); }

TEST(Wsetlocale, SavedNameRestoresTheLocale) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  const CString saved = _wsetlocale(LC_NUMERIC, nullptr);
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, u"C")), u"C");
  CString text;
  text.Format(u"%f", 0.5);
  EXPECT_EQ(text, CString(u"0.500000"));
  EXPECT_EQ(CString(_wsetlocale(LC_NUMERIC, saved)), saved);
  text.Format(u"%f", 0.5);
  EXPECT_EQ(text, CString(u"0,500000"));
}

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

TEST(Wsetlocale, TouchesNoOtherCategory) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  EXPECT_NE(_wsetlocale(LC_NUMERIC, u"C"), nullptr);
  EXPECT_EQ(std::setlocale(LC_CTYPE, nullptr), before);
}
