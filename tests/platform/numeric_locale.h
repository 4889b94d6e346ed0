// The numeric locale of one test.
#pragma once

#include <clocale>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>

// Sets LC_NUMERIC to the first of some locales that is installed, until the end of the scope.
class NumericLocale {
 public:
  explicit NumericLocale(std::initializer_list<const char*> names)
      : before_(std::setlocale(LC_NUMERIC, nullptr)) {
    for (const char* name : names) {
      if (std::setlocale(LC_NUMERIC, name) != nullptr) {
        found_ = true;
        return;
      }
    }
  }
  ~NumericLocale() { std::setlocale(LC_NUMERIC, before_.c_str()); }
  NumericLocale(const NumericLocale&) = delete;
  NumericLocale& operator=(const NumericLocale&) = delete;

  bool Found() const { return found_; }
  // Found, and its separator has several bytes.
  bool HasWideSeparator() const {
    return found_ && std::strlen(std::localeconv()->decimal_point) > 1;
  }

 private:
  std::string before_;
  bool found_ = false;
};

inline constexpr std::initializer_list<const char*> kCommaLocales = {"de_DE.UTF-8", "fr_FR.UTF-8",
                                                                     "German_Germany.1252"};
// Pashto: the separator is U+066B, two bytes of UTF-8.
inline constexpr std::initializer_list<const char*> kWideSeparatorLocales = {"ps_AF",
                                                                             "ps_AF.UTF-8"};

// A half as the thread's locale prints it: "0.5" or "0,5".
inline std::string printedHalf() {
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  return text;
}
