#include <gtest/gtest.h>

#include <clocale>
#include <cwchar>
#include <string>

#include "platform/locale.h"
#include "platform/windows_text.h"

TEST(Wsetlocale, IsThatOfTheCRuntime) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  ASSERT_NE(_wsetlocale(LC_NUMERIC, u"German_Germany.1252"), nullptr);
  const wchar_t* const runtimes = ::_wsetlocale(LC_NUMERIC, static_cast<wchar_t*>(nullptr));
  EXPECT_EQ(dxf2d::frameworkString(runtimes),
            std::u16string(_wsetlocale(LC_NUMERIC, static_cast<char16_t*>(nullptr))));
  EXPECT_STREQ(std::localeconv()->decimal_point, ",");
  std::setlocale(LC_NUMERIC, before.c_str());
}
