#include "platform/path_text.h"

#include <algorithm>
#include <cwchar>
#include <locale>

inline namespace kt_platform {

namespace {

// The standard's conversion: no locale, and unlike iconv no files, which a process that has opened
// too many could not open. Only its destructor is out of reach.
struct Utf : std::codecvt<char16_t, char8_t, std::mbstate_t> {};

constexpr char16_t kEscapeBase = 0xDC00;

bool isEscape(char16_t unit) { return unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF; }

// The first surrogate from `next` on that is encoded as if it were a character, which the
// conversion accepts and UTF-8 does not allow; `end` if there is none.
const char8_t* findEncodedSurrogate(const char8_t* next, const char8_t* end) {
  return std::adjacent_find(
      next, end, [](char8_t first, char8_t second) { return first == 0xED && second >= 0xA0; });
}

}  // namespace

std::u16string pathFromBytes(std::string_view bytes) {
  const Utf utf;
  // Never more units than bytes.
  std::u16string wide(bytes.size(), u'\0');
  char16_t* written = wide.data();
  const std::u8string source(bytes.begin(), bytes.end());
  const char8_t* next = source.data();
  const char8_t* const end = next + source.size();
  const char8_t* stop = findEncodedSurrogate(next, end);
  while (next != end) {
    std::mbstate_t state{};
    utf.in(state, next, stop, next, written, wide.data() + wide.size(), written);
    if (next != end) {
      *written++ = static_cast<char16_t>(kEscapeBase + *next++);
    }
    if (next > stop) {
      stop = findEncodedSurrogate(next, end);
    }
  }
  wide.resize(static_cast<std::size_t>(written - wide.data()));
  return wide;
}

std::string pathToBytes(std::u16string_view path) {
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

}  // namespace kt_platform
