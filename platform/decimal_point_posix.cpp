#include <langinfo.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "platform/decimal_point.h"

namespace dxf2d {

// localeconv would fill its whole record for this one field.
const char* decimalPoint() { return nl_langinfo(RADIXCHAR); }

std::size_t writeDecimalPoint(char* text) {
  const char* point = decimalPoint();
  const std::size_t size = strnlen(point, kDecimalPointSize);
  std::memcpy(text, point, size);
  return size;
}

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

std::size_t widenNumber(std::string_view printed, char16_t* wide) {
  const auto widen = [](char byte) {
    return static_cast<char16_t>(static_cast<unsigned char>(byte));
  };
  const std::string_view point = decimalPoint();
  const std::size_t at = printed.find(point);
  if (point.empty() || at == std::string_view::npos) {
    std::transform(printed.begin(), printed.end(), wide, widen);
    return printed.size();
  }
  const std::string_view before = printed.substr(0, at);
  const std::string_view after = printed.substr(at + point.size());
  char16_t* end = std::transform(before.begin(), before.end(), wide, widen);
  end += writeDecimalPoint(end);
  end = std::transform(after.begin(), after.end(), end, widen);
  return static_cast<std::size_t>(end - wide);
}

}  // namespace dxf2d
