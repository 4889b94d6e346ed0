// Numbers as a drawing writes them.
#pragma once

#include <optional>
#include <string_view>

namespace dxf2d {

// The number that `text` says, blanks around it left out, and correctly rounded; none where it is
// no number, or one that the type does not hold.
std::optional<double> parseReal(std::string_view text);
std::optional<int> parseInteger(std::string_view text);

}  // namespace dxf2d
