// Units of length, and scales of drawings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dxf2d {

struct LengthUnit {
  // 0: not known.
  double meters = 0.0;

  bool IsKnown() const { return meters > 0.0; }
  bool operator==(const LengthUnit&) const = default;
};

inline constexpr LengthUnit kMillimeter{0.001};
inline constexpr LengthUnit kCentimeter{0.01};
inline constexpr LengthUnit kMeter{1.0};
inline constexpr LengthUnit kInch{0.0254};
inline constexpr LengthUnit kFoot{0.3048};

// The unit of that name: mm, cm, m, in or ft, in any letter case. Empty for any other.
std::optional<LengthUnit> parseUnit(std::string_view name);

// The name that parseUnit takes, or a number of meters such as "0.5 m"; "unknown" where it is.
std::string unitName(LengthUnit unit);

// A scale as a factor: a number above 0 ("0.02") or a ratio of two such ("1:50", "1/50"). Empty for
// any other text.
std::optional<double> parseScale(std::string_view text);

}  // namespace dxf2d
