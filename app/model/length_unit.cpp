#include "app/model/length_unit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace dxf2d {
namespace {

struct NamedUnit {
  std::string_view name;
  LengthUnit unit;
};

constexpr std::array kUnits = std::to_array<NamedUnit>(
    {{"mm", kMillimeter}, {"cm", kCentimeter}, {"m", kMeter}, {"in", kInch}, {"ft", kFoot}});

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::optional<double> positiveNumber(std::string_view text) {
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stopped != end || !std::isfinite(value) || value <= 0.0) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::optional<LengthUnit> parseUnit(std::string_view name) {
  for (const NamedUnit& named : kUnits) {
    if (std::ranges::equal(named.name, name, {}, {}, lowered)) {
      return named.unit;
    }
  }
  return std::nullopt;
}

std::string unitName(LengthUnit unit) {
  if (!unit.IsKnown()) {
    return "unknown";
  }
  // Units that a file states in single precision are still those of the table.
  constexpr double kTolerance = 1e-6;
  for (const NamedUnit& named : kUnits) {
    if (std::abs(named.unit.meters - unit.meters) <= kTolerance * unit.meters) {
      return std::string(named.name);
    }
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.6g m", unit.meters);
  return text;
}

std::optional<double> parseScale(std::string_view text) {
  const std::size_t sign = text.find_first_of(":/");
  if (sign == std::string_view::npos) {
    return positiveNumber(text);
  }
  const std::optional<double> drawn = positiveNumber(text.substr(0, sign));
  const std::optional<double> real = positiveNumber(text.substr(sign + 1));
  if (!drawn || !real) {
    return std::nullopt;
  }
  const double scale = *drawn / *real;
  return std::isfinite(scale) && scale > 0.0 ? std::optional(scale) : std::nullopt;
}

}  // namespace dxf2d
