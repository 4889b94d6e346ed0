#include "platform/locale.h"

#include <gtest/gtest.h>

#include <string>

#include "numeric_locale.h"
#include "platform/cstring.h"

namespace {

// Typed: on Windows the C runtime has a function of this name too.
constexpr const char16_t* kQuery = nullptr;

}  // namespace

TEST(Wsetlocale, QueryNamesTheLocaleInForce) {
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, kQuery)), u"C");
}

TEST(Wsetlocale, UnknownLocaleIsNullAndChangesNothing) {
  EXPECT_EQ(_wsetlocale(LC_NUMERIC, u"xx_XX.none"), nullptr);
  EXPECT_EQ(_wsetlocale(LC_NUMERIC, u"Süd"), nullptr);
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, kQuery)), u"C");
}

TEST(Wsetlocale, UnknownCategoryIsNull) { EXPECT_EQ(_wsetlocale(12345, kQuery), nullptr); }

TEST(Wsetlocale, SavedNameRestoresTheLocale) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "Neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed.";
  }
  const CString saved = _wsetlocale(LC_NUMERIC, kQuery);
  EXPECT_EQ(std::u16string(_wsetlocale(LC_NUMERIC, u"C")), u"C");
  CString text;
  text.Format(u"%f", 0.5);
  EXPECT_EQ(text, CString(u"0.500000"));
  EXPECT_EQ(CString(_wsetlocale(LC_NUMERIC, saved)), saved);
  text.Format(u"%f", 0.5);
  EXPECT_EQ(text, CString(u"0,500000"));
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
