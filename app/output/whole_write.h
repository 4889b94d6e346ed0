// Changes to files that are complete or fail.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// Writes all of `bytes` to the open file `file`. Throws OutputError, with `name` for the file.
void writeWhole(int file, std::string_view bytes, const std::string& name);

// Removes all bytes of the open file `file`. Throws as writeWhole does.
void removeBytes(int file, const std::string& name);

}  // namespace dxf2d
