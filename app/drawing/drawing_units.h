// Units of length of a drawing.
#pragma once

#include <optional>
#include <string>

namespace dxf2d {

// The number that $INSUNITS gives to mm, cm, m, km, in or ft, in any letter case.
std::optional<int> parseUnits(const std::string& name);
inline constexpr const char* kExpectedUnits = "mm, cm, m, km, in or ft";

// The name of a number that parseUnits returns; "unit N" for others.
std::string unitsName(int units);

// How many `to` one `from` is. Both are of parseUnits.
double unitsRatio(int from, int to);

}  // namespace dxf2d
