// Parses the values of options. Each function returns std::nullopt for an invalid text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dxf2d {

// ASCII letters in lower case, blanks at both ends removed.
std::string normalized(std::string_view text);

// A finite decimal number, with an optional sign and exponent.
std::optional<double> parseNumber(const std::string& text);

// A decimal whole number from 1 to 4294967295; "010" is ten.
std::optional<std::uint32_t> parseCount(const std::string& text);
inline constexpr const char* kExpectedCount = "a whole number from 1 to 4294967295";

// The number of a Windows code page that drawings may have.
std::optional<unsigned> parseCodePage(const std::string& text);
inline constexpr const char* kExpectedCodePage =
    "1250 to 1258, 874, 932, 936, 949, 950 or 65001 (UTF-8)";

// Any text, such as a file name.
inline std::optional<std::string> parseText(const std::string& text) { return text; }

// Returns a parser for one of `values`, by name, in any letter case.
template <typename Value>
auto oneOf(std::vector<std::pair<std::string, Value>> values) {
  return [values = std::move(values)](const std::string& text) -> std::optional<Value> {
    for (const auto& [name, value] : values) {
      if (name == normalized(text)) {
        return value;
      }
    }
    return std::nullopt;
  };
}

}  // namespace dxf2d
