#include "ktscene/number_text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace dxf2d {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view takeDigits(std::string_view& rest) {
  const auto end = std::ranges::find_if_not(rest, isDigit);
  const std::string_view digits(rest.begin(), end);
  rest.remove_prefix(digits.size());
  return digits;
}

bool takeSign(std::string_view& rest) {
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) {
    rest.remove_prefix(1);
  }
  return negative;
}

// A number's text in its parts.
struct Parts {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  bool negativeExponent = false;
  std::string_view exponent;
};

bool split(std::string_view rest, Parts& parts) {
  parts.negative = takeSign(rest);
  parts.whole = takeDigits(rest);
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    parts.fraction = takeDigits(rest);
  }
  if (parts.whole.empty() && parts.fraction.empty()) {
    return false;
  }
  if (rest.starts_with('e') || rest.starts_with('E')) {
    rest.remove_prefix(1);
    parts.negativeExponent = takeSign(rest);
    parts.exponent = takeDigits(rest);
    if (parts.exponent.empty()) {
      return false;
    }
  }
  return rest.empty();
}

// Whether a number that no double can hold is too small and not too large.
bool isBelowOne(const Parts& parts) {
  // Beyond the length of any text, so that a larger exponent makes no difference.
  constexpr long long kLargestExponent = 100'000'000'000'000'000;
  long long exponent = 0;
  for (const char digit : parts.exponent) {
    exponent = std::min(exponent * 10 + (digit - '0'), kLargestExponent);
  }
  if (parts.negativeExponent) {
    exponent = -exponent;
  }

  const std::size_t wholeZeros = parts.whole.find_first_not_of('0');
  if (wholeZeros != std::string_view::npos) {
    return exponent + static_cast<long long>(parts.whole.size() - wholeZeros) <= 0;
  }
  const std::size_t zeros = std::min(parts.fraction.find_first_not_of('0'), parts.fraction.size());
  return exponent - static_cast<long long>(zeros) <= 0;
}

}  // namespace

bool parseReal(std::string_view text, double& value) {
  Parts parts;
  if (!split(text, parts)) {
    return false;
  }
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  const std::errc error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
  if (error == std::errc::result_out_of_range) {
    const double magnitude = isBelowOne(parts) ? 0.0 : std::numeric_limits<double>::infinity();
    value = parts.negative ? -magnitude : magnitude;
  }
  return true;
}

}  // namespace dxf2d
