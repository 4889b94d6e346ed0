#include "app/drawing/text_decoding.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "app/drawing/page_decoding.h"

namespace dxf2d {

namespace {

void appendUtf8(std::string& text, char32_t character) {
  const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xC0 | character >> 6);
    add(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    add(0xE0 | character >> 12);
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  } else {
    add(0xF0 | character >> 18);
    add(0x80 | (character >> 12 & 0x3F));
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  }
}

bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

bool isHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// The unit of "\U+XXXX" at `place`.
std::optional<char32_t> unitAt(std::u32string_view text, std::size_t place) {
  constexpr std::u32string_view kStart = U"\\U+";
  constexpr std::size_t kDigits = 4;
  if (text.substr(place, kStart.size()) != kStart) {
    return std::nullopt;
  }
  const std::u32string_view digits = text.substr(place + kStart.size(), kDigits);
  char32_t unit = 0;
  for (const char32_t digit : digits) {
    const char ascii = digit < 0x80 ? static_cast<char>(digit) : '\0';
    unsigned value = 0;
    if (std::from_chars(&ascii, &ascii + 1, value, 16).ec != std::errc()) {
      return std::nullopt;
    }
    unit = unit * 16 + value;
  }
  return digits.size() == kDigits ? std::optional(unit) : std::nullopt;
}

// A character and how much of the text stood for it.
struct Notation {
  char32_t character;
  std::size_t length;
};

Notation unicodeNotation(std::u32string_view text, std::size_t place, char32_t unit) {
  constexpr std::size_t kLength = 7;
  if (!isHigh(unit)) {
    return {isLow(unit) ? kReplacement : unit, kLength};
  }
  const std::optional<char32_t> low = unitAt(text, place + kLength);
  if (!low || !isLow(*low)) {
    return {kReplacement, kLength};
  }
  return {0x10000 + ((unit - 0xD800) << 10) + (*low - 0xDC00), 2 * kLength};
}

std::optional<char32_t> signAt(std::u32string_view text, std::size_t place) {
  if (text.substr(place, 2) != U"%%" || place + 2 >= text.size()) {
    return std::nullopt;
  }
  switch (text[place + 2]) {
    case U'd':
    case U'D':
      return U'\u00B0';
    case U'c':
    case U'C':
      return U'\u2300';
    case U'p':
    case U'P':
      return U'\u00B1';
    case U'%':
      return U'%';
    default:
      return std::nullopt;
  }
}

Notation characterAt(std::u32string_view text, std::size_t place) {
  if (const auto unit = unitAt(text, place)) {
    return unicodeNotation(text, place, *unit);
  }
  if (const auto sign = signAt(text, place)) {
    return {*sign, 3};
  }
  // A caret before a letter stands for a control character.
  if (text.substr(place, 2) == U"^ ") {
    return {U'^', 2};
  }
  return {text[place], 1};
}

}  // namespace

bool isTextCodePage(unsigned codePage) {
  switch (codePage) {
    case 874:
    case 932:
    case 936:
    case 949:
    case 950:
    case kUtf8Page:
      return true;
    default:
      return codePage >= 1250 && codePage <= 1258;
  }
}

std::string decodeText(std::string_view bytes, unsigned codePage) {
  if (!isTextCodePage(codePage)) {
    throw std::invalid_argument("no code page " + std::to_string(codePage));
  }
  const std::u32string text = decodeBytes(bytes, codePage);
  std::string decoded;
  for (std::size_t place = 0; place < text.size();) {
    const Notation notation = characterAt(text, place);
    if (!isControl(notation.character)) {
      appendUtf8(decoded, notation.character);
    }
    place += notation.length;
  }
  return decoded;
}

}  // namespace dxf2d
