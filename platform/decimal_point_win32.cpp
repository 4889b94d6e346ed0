#include <clocale>
#include <string_view>

#include "platform/decimal_point.h"
#include "platform/windows_api.h"

namespace dxf2d {

namespace {

// The code page of the LC_NUMERIC locale, which stands at the end of its name
// ("German_Germany.1252").
unsigned numericCodePage() {
  const std::string_view name = std::setlocale(LC_NUMERIC, nullptr);
  const std::size_t dot = name.rfind('.');
  unsigned page = 0;
  for (const char digit : dot == std::string_view::npos ? "" : name.substr(dot + 1)) {
    if (digit < '0' || digit > '9') {
      return CP_UTF8;
    }
    page = page * 10 + static_cast<unsigned>(digit - '0');
  }
  return page != 0 ? page : CP_ACP;
}

}  // namespace

const char* decimalPoint() { return std::localeconv()->decimal_point; }

std::size_t writeDecimalPoint(char16_t* text) {
  const std::string_view point = decimalPoint();
  if (point.size() == 1 && static_cast<unsigned char>(point[0]) < 0x80) {
    text[0] = static_cast<char16_t>(point[0]);
    return 1;
  }
  wchar_t wide[kDecimalPointSize];
  const int units = MultiByteToWideChar(numericCodePage(), 0, point.data(),
                                        static_cast<int>(point.size()), wide, kDecimalPointSize);
  if (units <= 0) {
    text[0] = u'.';
    return 1;
  }
  for (int i = 0; i < units; ++i) {
    text[i] = static_cast<char16_t>(wide[i]);
  }
  return static_cast<std::size_t>(units);
}

}  // namespace dxf2d
