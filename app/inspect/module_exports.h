// What a loadable module offers to others, read from its file without loading it.
#pragma once

#include <string>
#include <vector>

namespace dxf2d {

// The names that the module at `path` exports, as the linker knows them, in alphabetical order.
// Throws PluginError when the file cannot be read or is not a module.
std::vector<std::string> exportedNames(const std::string& path);

// The name as it is written in C++; `name` itself when it is none of C++.
std::string writtenInCpp(const std::string& name);

}  // namespace dxf2d
