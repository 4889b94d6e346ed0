#include <cwchar>

#include "platform/locale.h"
#include "platform/windows_text.h"

inline namespace kt_platform {

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C runtime's own name.
const char16_t* _wsetlocale(int category, const char16_t* locale) {
  return dxf2d::frameworkText(::_wsetlocale(category, dxf2d::windowsText(locale)));
}

}  // namespace kt_platform
