#include "app/model/view.h"

#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>

#include "app/cli/option_values.h"

namespace dxf2d {
namespace {

struct SineAndCosine {
  double sine;
  double cosine;
};

SineAndCosine ofDegrees(double degrees) {
  const double reduced = std::fmod(degrees, 360.0);
  const double quarter = reduced / 90.0;
  // The library's sine of pi is not 0, and a plan would show it.
  if (quarter == std::floor(quarter)) {
    constexpr std::array<SineAndCosine, 4> kQuarters{
        {{0.0, 1.0}, {1.0, 0.0}, {0.0, -1.0}, {-1.0, 0.0}}};
    return kQuarters[static_cast<std::size_t>((static_cast<int>(quarter) + 4) % 4)];
  }
  // That of the isometric view. C libraries differ in the last digit of a sine; other angles show
  // that.
  if (reduced == 45.0) {
    return {0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1};
  }
  const double radians = reduced * std::numbers::pi / 180.0;
  return {std::sin(radians), std::cos(radians)};
}

Affine viewFrom(SineAndCosine azimuth, SineAndCosine elevation) {
  const std::array<double, 3> right{azimuth.cosine, azimuth.sine, 0.0};
  const std::array<double, 3> up{-elevation.sine * azimuth.sine, elevation.sine * azimuth.cosine,
                                 elevation.cosine};
  const std::array<double, 3> towards{elevation.cosine * azimuth.sine,
                                      -elevation.cosine * azimuth.cosine, elevation.sine};
  Affine view;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    view.linear[3 * axis] = right[axis];
    view.linear[3 * axis + 1] = up[axis];
    view.linear[3 * axis + 2] = towards[axis];
  }
  dropNoise(view);
  return view;
}

// A number that takes up the whole text.
std::optional<double> wholeNumber(std::string_view text) {
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::optional<Affine> parseView(std::string_view given) {
  const std::string text = normalized(given);
  struct Named {
    std::string_view name;
    double azimuth;
    double elevation;
  };
  constexpr std::array<Named, 6> kNamed{{{"top", 0.0, 90.0},
                                         {"bottom", 0.0, -90.0},
                                         {"front", 0.0, 0.0},
                                         {"back", 180.0, 0.0},
                                         {"left", 270.0, 0.0},
                                         {"right", 90.0, 0.0}}};
  for (const Named& view : kNamed) {
    if (view.name == text) {
      return viewFrom(ofDegrees(view.azimuth), ofDegrees(view.elevation));
    }
  }
  if (text == "iso") {
    // All three axes show at the same length: the elevation's tangent is 1 / sqrt(2).
    return viewFrom(ofDegrees(45.0), {std::sqrt(1.0 / 3.0), std::sqrt(2.0 / 3.0)});
  }
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) {
    return std::nullopt;
  }
  const std::optional<double> azimuth = wholeNumber(normalized(text.substr(0, comma)));
  const std::optional<double> elevation = wholeNumber(normalized(text.substr(comma + 1)));
  if (!azimuth || !elevation || std::abs(*elevation) > 90.0) {
    return std::nullopt;
  }
  return viewFrom(ofDegrees(*azimuth), ofDegrees(*elevation));
}

}  // namespace dxf2d
