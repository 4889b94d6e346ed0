// Decimal text of reals, the same in every locale.
#pragma once

#include <string_view>

namespace dxf2d {

// Reads the whole of `text`, [+-]?(digits[.digits*]|.digits)([eE][+-]?digits)? in ASCII, as the
// nearest double. Underflow gives 0 with the sign of the text, overflow an infinity. Returns
// false, and leaves `value` alone, for any other text.
bool parseReal(std::string_view text, double& value);

}  // namespace dxf2d
