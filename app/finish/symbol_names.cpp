#include "app/finish/symbol_names.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/path_text.h"

namespace dxf2d::finish {

namespace {

// The letters from U+00C0 on, in ASCII.
constexpr std::string_view kLatinOne[] = {
    "A", "A", "A", "A", "Ae", "A", "Ae", "C", "E", "E", "E", "E", "I",  "I", "I",  "I",
    "D", "N", "O", "O", "O",  "O", "Oe", "x", "O", "U", "U", "U", "Ue", "Y", "Th", "ss",
    "a", "a", "a", "a", "ae", "a", "ae", "c", "e", "e", "e", "e", "i",  "i", "i",  "i",
    "d", "n", "o", "o", "o",  "o", "oe", "-", "o", "u", "u", "u", "ue", "y", "th", "y"};
// And from U+0100 on.
constexpr std::string_view kLatinExtended =
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIiIiJjKkkLlLlLlLlLlNnNnNnnNnOoOoOoOoRrRrRrSsSs"
    "SsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs";
constexpr char16_t kFirstLatinOne = 0xC0;
constexpr char16_t kFirstExtended = 0x100;
static_assert(std::size(kLatinOne) == kFirstExtended - kFirstLatinOne);
static_assert(kLatinExtended.size() == 128);

// One unit of UTF-16 as it stands in a name. Readers take names for what they are: in one with the
// notation for letters beyond ASCII, some refuse the backslash.
std::string encoded(char16_t unit) {
  // What programs of this format refuse, and the caret, which begins a notation.
  constexpr std::u16string_view kIllegal = u"<>/\\\":;?*|=`,^";
  constexpr char16_t kFirstPrintable = 0x20;
  constexpr char16_t kDelete = 0x7F;
  constexpr char16_t kLastControl = 0x9F;
  if (unit < kFirstPrintable || (unit >= kDelete && unit <= kLastControl) ||
      kIllegal.find(unit) != kIllegal.npos) {
    return "_";
  }
  if (unit < kDelete) {
    return {static_cast<char>(unit)};
  }
  if (unit >= kFirstLatinOne && unit < kFirstExtended) {
    return std::string(kLatinOne[unit - kFirstLatinOne]);
  }
  if (unit >= kFirstExtended && unit < kFirstExtended + kLatinExtended.size()) {
    return {kLatinExtended[unit - kFirstExtended]};
  }
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "U+";
  for (int shift = 12; shift >= 0; shift -= 4) {
    text += kDigits[(unit >> shift) & 0xF];
  }
  return text;
}

bool isHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// The first characters of `name`, as many as have room in `size`.
std::string encodedWithin(std::u16string_view name, std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    std::string character = encoded(name[i]);
    if (isHigh(name[i]) && i + 1 < name.size()) {
      character += encoded(name[++i]);
    }
    if (character == "%" && text.ends_with('%')) {
      // Two begin a notation.
      character = "_";
    }
    if (text.size() + character.size() > size) {
      break;
    }
    text += character;
  }
  return text;
}

std::u16string_view withoutOuterSpaces(std::u16string_view text) {
  while (!text.empty() && text.front() == u' ') {
    text.remove_prefix(1);
  }
  while (!text.empty() && text.back() == u' ') {
    text.remove_suffix(1);
  }
  return text;
}

std::string nameWithin(std::string_view name, std::size_t size) {
  const std::u16string wide = pathFromBytes(name);
  std::string text = encodedWithin(withoutOuterSpaces(wide), size);
  while (!text.empty() && text.back() == ' ') {
    text.pop_back();
  }
  return text.empty() ? "unnamed" : text;
}

std::string inLowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return text;
}

}  // namespace

std::string symbolName(std::string_view name) { return nameWithin(name, kMaxSymbolName); }

std::string SymbolNames::Add(std::string_view name) {
  std::string text = symbolName(name);
  const std::string first = inLowerCase(text);
  while (!taken_.insert(inLowerCase(text)).second) {
    // The first that follows is number 2.
    const std::size_t number = ++counts_[first] + 1;
    std::string suffix("_");
    suffix += std::to_string(number);
    text = nameWithin(name, kMaxSymbolName - suffix.size()) + suffix;
  }
  return text;
}

}  // namespace dxf2d::finish
