#include <gtest/gtest.h>

#include <clocale>
#include <initializer_list>
#include <string>

#include "dxf/dot_locale.h"

namespace dxf2d {

namespace {

// Sets every category to C.UTF-8, which every C library has, until the end of the scope.
class Utf8Locale {
 public:
  Utf8Locale() : before_(std::setlocale(LC_ALL, nullptr)) {
    EXPECT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  }
  ~Utf8Locale() { std::setlocale(LC_ALL, before_.c_str()); }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

 private:
  std::string before_;
};

}  // namespace

TEST(DotLocale, LeavesTheOtherCategoriesAlone) {
  const std::initializer_list<int> others = {LC_COLLATE, LC_CTYPE, LC_MESSAGES, LC_MONETARY,
                                             LC_TIME};
  const Utf8Locale locale;
  {
    const DotLocale guard;
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    for (const int category : others) {
      EXPECT_STREQ(std::setlocale(category, nullptr), "C.UTF-8") << category;
    }
    ASSERT_NE(std::setlocale(LC_TIME, "C"), nullptr);
  }
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C.UTF-8");
  EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
}

}  // namespace dxf2d
