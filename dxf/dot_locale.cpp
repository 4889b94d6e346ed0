#include "dxf/dot_locale.h"

#include <clocale>

#include "platform/cstring.h"
#include "platform/locale.h"

namespace dxf2d {

namespace {

int guards = 0;

CString& savedName() {
  static CString name;
  return name;
}

}  // namespace

DotLocale::DotLocale() {
  if (guards == 0) {
    // Typed: on Windows the C runtime has a function of this name too.
    constexpr const char16_t* kQuery = nullptr;
    savedName() = CString(_wsetlocale(LC_NUMERIC, kQuery));
    _wsetlocale(LC_NUMERIC, u"C");
  }
  ++guards;
}

DotLocale::~DotLocale() {
  --guards;
  if (guards == 0) {
    _wsetlocale(LC_NUMERIC, savedName());
  }
}

}  // namespace dxf2d
