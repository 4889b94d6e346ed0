// The code pages of the system.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

inline constexpr unsigned kUtf8Page = 65001;
// In place of a byte that is none of the page's.
inline constexpr char32_t kReplacement = 0xFFFD;

// The characters of `bytes` in a page that isTextCodePage knows. Throws std::invalid_argument when
// the system lacks it.
std::u32string decodeBytes(std::string_view bytes, unsigned codePage);

}  // namespace dxf2d
