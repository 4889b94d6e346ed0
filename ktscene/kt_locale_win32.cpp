#include <clocale>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ktscene/kt_locale.h"

// The C library that mingw's programs share, msvcrt.dll, has one locale for the whole process.

KtNumericLocale::KtNumericLocale() {
  if (std::strcmp(std::localeconv()->decimal_point, ".") == 0) {
    return;
  }
  before_ = _strdup(std::setlocale(LC_NUMERIC, nullptr));
  if (before_ == nullptr) {
    throw std::bad_alloc();
  }
  std::setlocale(LC_NUMERIC, "C");
}

KtNumericLocale::~KtNumericLocale() {
  if (before_ != nullptr) {
    std::setlocale(LC_NUMERIC, static_cast<const char*>(before_));
    std::free(before_);
  }
}
