// Names of files as paths.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <type_traits>

namespace dxf2d {

// The path of a name: in UTF-8 on Windows, where a path that is made of plain bytes takes each for
// a character; elsewhere any bytes. path::string() is its reverse.
inline std::filesystem::path filePath(std::string_view name) {
  using Bytes = std::conditional_t<std::is_same_v<std::filesystem::path::value_type, char>,
                                   std::string, std::u8string>;
  return Bytes(name.begin(), name.end());
}

}  // namespace dxf2d
