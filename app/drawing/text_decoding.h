// Texts of a drawing, from the bytes of a code page to characters.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// Whether decodeText knows the page: 1250 to 1258, 874, 932, 936, 949, 950 or 65001.
bool isTextCodePage(unsigned codePage);

// The characters of `bytes` in `codePage`, as UTF-8. A byte that means nothing there becomes
// U+FFFD, control characters are dropped. Then the format's own notations are resolved: \U+ and
// four hexadecimal digits (a surrogate pair in two), and %%d, %%c, %%p, %%% for the signs of
// degree, diameter, plus-minus and percent, and a caret with a space for the caret. Throws
// std::invalid_argument for another page.
std::string decodeText(std::string_view bytes, unsigned codePage);

}  // namespace dxf2d
