// Unicode text between UTF-8 and UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// A lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view text);
// A byte that is not part of a character becomes U+FFFD.
std::u16string fromUtf8(std::string_view text);

}  // namespace dxf2d
