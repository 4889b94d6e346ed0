// What a module for Windows (a DLL) exports, read from its bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

// The names that the module with these bytes exports, in alphabetical order; nothing when they are
// not those of a module for Windows, of 32 or of 64 bits, or when a table lies outside of them. Any
// bytes are safe. Exports without a name are left out.
std::optional<std::vector<std::string>> windowsExports(std::string_view bytes);

}  // namespace dxf2d
