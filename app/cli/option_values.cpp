#include "app/cli/option_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace dxf2d {
namespace {

template <typename Number>
std::optional<Number> parseWhole(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stopped != end) {
    return std::nullopt;
  }
  return number;
}

}  // namespace

std::string normalized(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  const std::size_t end = text.find_last_not_of(kBlanks) + 1;
  std::string result(text.substr(begin, std::max(begin, end) - begin));
  std::ranges::transform(result, result.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return result;
}

std::optional<double> parseNumber(const std::string& text) {
  std::string_view digits = text;
  if (digits.starts_with('+') && !digits.starts_with("+-")) {
    digits.remove_prefix(1);
  }
  const std::optional<double> number = parseWhole<double>(digits);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::uint32_t> parseCount(const std::string& text) {
  const std::optional<std::uint32_t> count = parseWhole<std::uint32_t>(text);
  return count && *count != 0 ? count : std::nullopt;
}

std::optional<unsigned> parseCodePage(const std::string& text) {
  constexpr unsigned kFarEastern[] = {874, 932, 936, 949, 950};
  constexpr unsigned kUtf8 = 65001;
  const std::optional<unsigned> page = parseWhole<unsigned>(text);
  const bool isKnown = page && ((*page >= 1250 && *page <= 1258) || *page == kUtf8 ||
                                std::ranges::find(kFarEastern, *page) != std::end(kFarEastern));
  return isKnown ? page : std::nullopt;
}

}  // namespace dxf2d
