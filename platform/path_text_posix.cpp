#include "platform/path_text.h"

#include <cwchar>
#include <locale>

namespace {

// The standard's conversion: no locale, and unlike iconv no files, which a process that has opened
// too many could not open. Only its destructor is out of reach.
struct Utf : std::codecvt<char16_t, char8_t, std::mbstate_t> {};

constexpr char16_t kEscapeBase = 0xDC00;

bool isEscape(char16_t unit) { return unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF; }

}  // namespace

std::u16string PathFromBytes(std::string_view bytes) {
  const Utf utf;
  // Never more units than bytes.
  std::u16string wide(bytes.size(), u'\0');
  char16_t* written = wide.data();
  const std::u8string source(bytes.begin(), bytes.end());
  const char8_t* next = source.data();
  const char8_t* const end = next + source.size();
  while (next != end) {
    std::mbstate_t state{};
    utf.in(state, next, end, next, written, wide.data() + wide.size(), written);
    if (next != end) {
      *written++ = static_cast<char16_t>(kEscapeBase + *next++);
    }
  }
  wide.resize(static_cast<std::size_t>(written - wide.data()));
  return wide;
}

std::string PathToBytes(std::u16string_view path) {
  const Utf utf;
  // At most three bytes come of a unit.
  std::u8string bytes(path.size() * 3, u8'\0');
  char8_t* written = bytes.data();
  const char16_t* next = path.data();
  const char16_t* const end = next + path.size();
  while (next != end) {
    std::mbstate_t state{};
    utf.out(state, next, end, next, written, bytes.data() + bytes.size(), written);
    if (next != end) {
      const char16_t unit = *next++;
      *written++ = isEscape(unit) ? static_cast<char8_t>(unit - kEscapeBase) : u8'?';
    }
  }
  return {bytes.data(), written};
}
