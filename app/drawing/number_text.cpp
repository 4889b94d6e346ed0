#include "app/drawing/number_text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

namespace dxf2d {

namespace {

// Codes are padded to three characters, and so are some values.
std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
  text = withoutBlanks(text);
  const char* end = text.data() + text.size();
  Number number{};
  const auto [last, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && last == end && !text.empty() ? std::optional(number)
                                                              : std::nullopt;
}

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

// Most numbers: digits, a point and digits, few enough for the quotient of two whole numbers that a
// double holds to be the number rounded once. Several times as fast as what is right for all.
std::optional<double> parseShortDecimal(std::string_view text) {
  constexpr std::size_t kMostDigits = 15;
  static constexpr std::array kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool isNegative = text.starts_with('-');
  std::size_t at = isNegative ? 1 : 0;
  // Digits, the point and nothing else.
  if (text.size() - at > kMostDigits + 1) {
    return std::nullopt;
  }
  std::int64_t digits = 0;
  const std::size_t first = at;
  for (; at < text.size() && isDigit(text[at]); ++at) {
    digits = 10 * digits + (text[at] - '0');
  }
  if (at == first || at + 1 >= text.size() || text[at] != '.') {
    return std::nullopt;
  }
  const std::size_t point = at;
  for (++at; at < text.size() && isDigit(text[at]); ++at) {
    digits = 10 * digits + (text[at] - '0');
  }
  if (at != text.size()) {
    return std::nullopt;
  }
  const double value = static_cast<double>(digits) / kPowers[at - point - 1];
  return isNegative ? -value : value;
}

}  // namespace

std::optional<double> parseReal(std::string_view text) {
  // The height of every point in a plan.
  if (text == "0.000000") {
    return 0.0;
  }
  if (const std::optional<double> value = parseShortDecimal(text)) {
    return value;
  }
  return parseNumber<double>(text);
}

std::optional<int> parseInteger(std::string_view text) {
  if (text.size() == 1 && isDigit(text.front())) {
    return text.front() - '0';
  }
  return parseNumber<int>(text);
}

}  // namespace dxf2d
