// What stands between the names of a path.
#pragma once

#include <filesystem>
#include <string_view>

namespace dxf2d {

// On Windows both kinds of slashes.
inline constexpr std::string_view kPathSeparators =
    std::filesystem::path::preferred_separator == '/' ? "/" : "/\\";

}  // namespace dxf2d
