// Names of what this process has open.
#pragma once

#include <optional>
#include <string_view>

namespace dxf2d {

// The descriptor of this process that `path` names, if any, such as /dev/stdout or /dev/fd/3. It
// may be a regular file with a file offset of its own, which opening or replacing the file would
// ignore.
std::optional<int> ownDescriptor(std::string_view path);

}  // namespace dxf2d
