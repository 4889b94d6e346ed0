#include "app/cli/printable.h"

#include <algorithm>
#include <cstddef>

namespace dxf2d {

namespace {

// A character and the bytes that it takes; a length of 0 for what is not UTF-8.
struct Character {
  char32_t code = 0;
  std::size_t length = 0;
};

// Decodes the first character of `text`, which is not empty. Overlong forms, surrogates and what
// lies beyond Unicode are not UTF-8 (RFC 3629).
Character firstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) {
    return {lead, 1};
  }
  const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < length) {
    return {};
  }
  char32_t code = lead & (0x7fU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xc0U) != 0x80) {
      return {};
    }
    code = code << 6 | (byte & 0x3fU);
  }
  constexpr char32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
  if (code < kFirstOfLength[length] || isSurrogate || code > 0x10ffff) {
    return {};
  }
  return {code, length};
}

bool isControl(char32_t code) {
  return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029;
}

// The bidirectional formatting characters of Unicode Standard Annex 9.
bool isDirectional(char32_t code) {
  return code == 0x061c || code == 0x200e || code == 0x200f || (code >= 0x202a && code <= 0x202e) ||
         (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    const std::size_t length = character.length == 0 ? 1 : character.length;
    if (character.length == 0 || isControl(character.code) || isDirectional(character.code)) {
      result.append(length, '?');
    } else {
      result.append(text.substr(0, length));
    }
    text.remove_prefix(length);
  }
  return result;
}

std::size_t lengthOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string padded(std::string_view text, std::size_t length) {
  std::string line(text);
  return line.append(length - std::min(length, lengthOf(text)), ' ');
}

}  // namespace dxf2d
