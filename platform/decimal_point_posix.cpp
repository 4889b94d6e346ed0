#include <langinfo.h>

#include <cwchar>
#include <iterator>

#include "platform/decimal_point.h"

namespace dxf2d {

// localeconv would fill its whole record for this one field.
const char* decimalPoint() { return nl_langinfo(RADIXCHAR); }

std::size_t writeDecimalPoint(char16_t* text) {
  const char* point = decimalPoint();
  const auto first = static_cast<unsigned char>(point[0]);
  if (first < 0x80 && point[1] == '\0') {
    text[0] = first;
    return 1;
  }
  // The separator's bytes belong to the character set of LC_NUMERIC, which need not be that of
  // LC_CTYPE and so of mbrtowc; wide printf knows the character itself.
  wchar_t printed[8];
  if (std::swprintf(printed, std::size(printed), L"%.1f", 0.0) != 3) {
    text[0] = u'.';
    return 1;
  }
  const auto character = static_cast<char32_t>(printed[1]);
  if (character < 0x10000) {
    text[0] = static_cast<char16_t>(character);
    return 1;
  }
  text[0] = static_cast<char16_t>(0xD7C0 + (character >> 10));
  text[1] = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
  return 2;
}

}  // namespace dxf2d
