// Modules for another system than this one, which are read and not loaded.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace dxf2d {

struct ForeignModule {
  // Such as "Windows".
  std::string system;
  // The names that it exports, in alphabetical order.
  std::vector<std::string> exports;
};

// The module at `path`; nothing for any other file.
std::optional<ForeignModule> foreignModule(const std::string& path);

}  // namespace dxf2d
