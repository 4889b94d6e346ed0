#include "app/model/label_name.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace dxf2d {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLetter(char c) { return isUpper(c) || (c >= 'a' && c <= 'z'); }
char lowered(char c) { return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

std::string lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char c) { return lowered(c); });
  return result;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kAround = " \t\r\n_-.:,;#|/";
  const std::size_t begin = text.find_first_not_of(kAround);
  if (begin == text.npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kAround) - begin + 1);
}

// A compressed GUID of IFC: 22 characters of a base 64 alphabet, the first from 0 to 3, and, unlike
// words of that length, with a digit or $ beyond it.
bool isIfcGuid(std::string_view text) {
  constexpr std::size_t kLength = 22;
  const auto inAlphabet = [](char c) { return isDigit(c) || isLetter(c) || c == '_' || c == '$'; };
  return text.size() == kLength && text[0] >= '0' && text[0] <= '3' &&
         std::ranges::all_of(text, inAlphabet);
}

bool isHexadecimal(char c) { return isDigit(c) || (lowered(c) >= 'a' && lowered(c) <= 'f'); }

// A GUID in hexadecimal digits, with hyphens and braces or without, or a long number in them.
bool isHexadecimalId(std::string_view text) {
  constexpr std::size_t kLeast = 8;
  std::size_t digits = 0;
  bool hasDecimal = false;
  for (const char c : text) {
    if (isHexadecimal(c)) {
      ++digits;
      hasDecimal = hasDecimal || isDigit(c);
    } else if (c != '-' && c != '{' && c != '}') {
      return false;
    }
  }
  return digits >= kLeast && hasDecimal;
}

// Without an identifier after the last character of `separators`.
std::string_view withoutIdentifier(std::string_view name) {
  constexpr std::size_t kGuid = 22;
  if (name.size() > kGuid && isIfcGuid(name.substr(name.size() - kGuid)) &&
      std::string_view("_- :").find(name[name.size() - kGuid - 1]) != std::string_view::npos) {
    return name.substr(0, name.size() - kGuid);
  }
  const std::size_t separator = name.find_last_of("_ :");
  if (separator != name.npos && isHexadecimalId(name.substr(separator + 1))) {
    return name.substr(0, separator);
  }
  return isIfcGuid(name) || isHexadecimalId(name) ? std::string_view() : name;
}

// Without a counter at its end: "[55]", ".001", "_12", "(3)", "#4", a space and a number.
std::string_view withoutCounter(std::string_view name) {
  std::string_view stem = name;
  const bool isBracketed = stem.ends_with(']') || stem.ends_with(')');
  if (isBracketed) {
    stem.remove_suffix(1);
  }
  const std::size_t size = stem.size();
  while (!stem.empty() && isDigit(stem.back())) {
    stem.remove_suffix(1);
  }
  if (stem.size() == size || stem.empty()) {
    return name;
  }
  const std::string_view before = isBracketed ? "[(" : "._#";
  return before.find(stem.back()) == before.npos ? name : stem.substr(0, stem.size() - 1);
}

// Without the class that IFC readers put before a name: "IfcDoor_Entrance".
std::string_view withoutClass(std::string_view name) {
  if (!lowered(name.substr(0, 3)).starts_with("ifc") || name.size() < 4 || !isUpper(name[3])) {
    return name;
  }
  const std::size_t separator =
      name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  if (separator == name.npos) {
    return {};
  }
  return name.substr(separator + 1);
}

// Words that exporters write where the author wrote nothing.
bool isGeneric(std::string_view name) {
  static constexpr std::array kWords = std::to_array<std::string_view>(
      {"mesh",        "meshes",        "node",      "nodes",   "object",   "objects",  "obj",
       "geometry",    "geom",          "group",     "shape",   "root",     "rootnode", "scene",
       "default",     "defaultobject", "material",  "unnamed", "untitled", "instance", "model",
       "polysurface", "nurbs",         "surface",   "body",    "solid",    "layer",    "entity",
       "part",        "item",          "transform", "null",    "empty",    "world",    "g",
       "o",           "undefined",     "undef"});
  std::string word = lowered(name);
  while (!word.empty() &&
         (isDigit(word.back()) || word.back() == ' ' || word.back() == '_' || word.back() == '-')) {
    word.pop_back();
  }
  if (word.starts_with('$') || word.starts_with('<')) {
    return true;
  }
  return std::ranges::find(kWords, word) != kWords.end();
}

bool hasWord(std::string_view name) {
  // Bytes beyond ASCII are letters of some script.
  return std::ranges::any_of(name, [](char c) { return isLetter(c) || (c & 0x80) != 0; });
}

}  // namespace

std::string readableName(std::string_view name) {
  // First, since an identifier may end in an underscore.
  std::string_view kept = trimmed(withoutIdentifier(name));
  std::string_view before;
  while (kept != before) {
    before = kept;
    kept = trimmed(withoutCounter(trimmed(withoutIdentifier(kept))));
  }
  kept = trimmed(withoutClass(kept));
  if (!hasWord(kept) || isGeneric(kept)) {
    return {};
  }
  std::string result(kept);
  std::ranges::replace(result, '_', ' ');
  // The author's program cut the name off here.
  constexpr std::string_view kEllipsis = "...";
  const auto end = static_cast<std::size_t>(kept.data() + kept.size() - name.data());
  if (name.substr(end).starts_with(kEllipsis)) {
    result += kEllipsis;
  }
  return result;
}

bool isHelperName(std::string_view name) {
  static constexpr std::array kParts = std::to_array<std::string_view>(
      {"_bound", "boundingbox", "bounding_box", "collider", "collision", "camera", "light_"});
  static constexpr std::array kNames =
      std::to_array<std::string_view>({"light", "lamp", "sun", "spot", "bound", "bounds"});
  const std::string word = lowered(name);
  const auto isPart = [&word](std::string_view part) { return word.find(part) != word.npos; };
  return std::ranges::any_of(kParts, isPart) ||
         std::ranges::find(kNames, lowered(withoutCounter(name))) != kNames.end();
}

}  // namespace dxf2d
