#include "app/drawing/page_decoding.h"

#include <algorithm>
#include <stdexcept>

#include "platform/windows_api.h"

namespace dxf2d {

namespace {

bool isHigh(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }

// The character that `bytes`, all of them, stand for; 0 for none. Windows makes control characters
// of bytes that a page does not use.
char32_t characterOf(std::string_view bytes, unsigned codePage) {
  wchar_t units[4];
  const int count = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(),
                                        static_cast<int>(bytes.size()), units, 4);
  if (count == 2 && isHigh(units[0])) {
    return 0x10000 + ((units[0] - 0xD800U) << 10U) + (units[1] - 0xDC00U);
  }
  const bool isUnused = codePage != kUtf8Page && units[0] >= 0x80 && units[0] < 0xA0;
  return count == 1 && !isUnused ? units[0] : 0;
}

}  // namespace

std::u32string decodeBytes(std::string_view bytes, unsigned codePage) {
  if (IsValidCodePage(codePage) == 0) {
    throw std::invalid_argument("the system has no code page " + std::to_string(codePage));
  }
  std::u32string text;
  while (!bytes.empty()) {
    // No page has characters of more bytes.
    constexpr std::size_t kMost = 4;
    char32_t character = 0;
    std::size_t size = 0;
    while (character == 0 && size < std::min(kMost, bytes.size())) {
      character = characterOf(bytes.substr(0, ++size), codePage);
    }
    text += character != 0 ? character : bytes[0] == '\0' ? U'\0' : kReplacement;
    bytes.remove_prefix(character != 0 ? size : 1);
  }
  return text;
}

}  // namespace dxf2d
