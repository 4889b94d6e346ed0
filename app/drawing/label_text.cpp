#include "app/drawing/label_text.h"

#include <algorithm>

#include "platform/path_text.h"

namespace dxf2d {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr std::u16string_view kEllipsis = u"...";

bool isControl(char16_t c) { return c <= 0x1F || (c >= 0x7F && c <= 0x9F); }
bool isHigh(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool isLow(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

std::u16string notation(char16_t unit) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::u16string text = u"\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) {
    text += static_cast<char16_t>(kDigits[(unit >> shift) & 0xF]);
  }
  return text;
}

bool beginsNotation(std::u16string_view text) {
  constexpr std::u16string_view kLetters = u"UuMm";
  return text.size() > 2 && kLetters.find(text[1]) != kLetters.npos && text[2] == u'+';
}

// Takes the first character off `rest` and returns how a text shows it; `before` is the character
// that it follows, 0 at the beginning.
std::u16string takeCharacter(std::u16string_view& rest, char16_t before) {
  const char16_t c = rest.front();
  const std::u16string_view whole = rest;
  rest.remove_prefix(1);
  if (isControl(c)) {
    return u" ";
  }
  if (isHigh(c) && !rest.empty() && isLow(rest.front())) {
    std::u16string pair = notation(c) + notation(rest.front());
    rest.remove_prefix(1);
    return pair;
  }
  if (isHigh(c) || isLow(c)) {
    return notation(kReplacement);
  }
  if (c > 0x7F || (c == u'\\' && beginsNotation(whole))) {
    return notation(c);
  }
  if (c == u'%' && (before == u'%' || rest.starts_with(u'%'))) {
    return u"%%%";
  }
  if (c == u'^') {
    return u"^ ";
  }
  return {c};
}

std::u16string_view withoutOuterSpaces(std::u16string_view text) {
  const auto isSpace = [](char16_t c) { return c == u' ' || isControl(c); };
  while (!text.empty() && isSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace

std::u16string textOfName(std::string_view name) {
  const std::u16string wide = pathFromBytes(name);
  std::u16string_view rest = withoutOuterSpaces(wide);
  std::u16string text;
  // Where the text can be cut so that an ellipsis still fits.
  std::size_t cut = 0;
  char16_t before = 0;
  while (!rest.empty()) {
    const char16_t first = rest.front();
    text += takeCharacter(rest, before);
    before = first;
    if (text.size() > kMaxLabelText) {
      return text.substr(0, cut).append(kEllipsis);
    }
    if (text.size() + kEllipsis.size() <= kMaxLabelText) {
      cut = text.size();
    }
  }
  return text;
}

}  // namespace dxf2d
