#include "ktscene/utf_text.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <locale>

namespace dxf2d {

namespace {

// The standard's conversion, which knows no locale; only its destructor is out of reach.
struct Utf : std::codecvt<char16_t, char8_t, std::mbstate_t> {};

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
  const Utf utf;
  std::string result;
  char8_t bytes[256];
  const char16_t* next = text.data();
  const char16_t* const end = next + text.size();
  while (next != end) {
    std::mbstate_t state{};
    const char16_t* const before = next;
    char8_t* written = bytes;
    utf.out(state, next, end, next, std::begin(bytes), std::end(bytes), written);
    result.append(bytes, written);
    if (next == before) {
      result += "\uFFFD";
      ++next;
    }
  }
  return result;
}

std::u16string fromUtf8(std::string_view text) {
  if (isAscii(text)) {
    return {text.begin(), text.end()};
  }
  const Utf utf;
  // Never more units than bytes.
  std::u16string result(text.size(), u'\0');
  char16_t* written = result.data();
  const std::u8string source(text.begin(), text.end());
  const char8_t* next = source.data();
  const char8_t* const end = next + source.size();
  while (next != end) {
    std::mbstate_t state{};
    const char8_t* const before = next;
    utf.in(state, next, end, next, written, result.data() + result.size(), written);
    if (next == before) {
      *written++ = u'\uFFFD';
      ++next;
    }
  }
  result.resize(static_cast<std::size_t>(written - result.data()));
  return result;
}

}  // namespace dxf2d
