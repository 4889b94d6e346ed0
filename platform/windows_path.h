// File names for the functions of Windows.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// `path` as the functions of Windows take it. They refuse names of MAX_PATH units and more unless
// these are complete and marked as such ("\\?\"), which is done here.
std::wstring windowsPath(std::u16string_view path);
// The same for a path in UTF-8 (see platform/path_text.h).
std::wstring windowsPath(std::string_view path);

}  // namespace dxf2d
