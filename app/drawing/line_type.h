// Names of line types.
#pragma once

#include <string_view>

#include "app/drawing/drawing.h"

namespace dxf2d {

inline constexpr std::string_view kDashedName = "DASHED";
inline constexpr std::string_view kContinuousName = "Continuous";

// The line type of this name, in any case; an empty one stands for that of the layer. What is
// neither that nor dashed counts as continuous.
LineType lineTypeOf(std::string_view name);

// The name of the line type in releases since 2000.
std::string_view lineTypeName(LineType lineType);

}  // namespace dxf2d
