// Decimal text of reals, the same in every locale.
#pragma once

#include <string_view>

// Reads the whole of `text`, [+-]?(digits[.digits*]|.digits)([eE][+-]?digits)? in ASCII, as the
// nearest double. What is too small is 0 with its sign, what is too large an infinity. Answers
// false, and leaves `value` alone, when the text is anything else.
bool parseReal(std::string_view text, double& value);
