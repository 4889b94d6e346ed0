// Files that are read by the C library.
#pragma once

#include <cstdio>
#include <string>

namespace dxf2d {

// fopen(path, "rb") for a path in UTF-8 (see platform/path_text.h). Null on failure, and errno says
// why.
std::FILE* openForReading(const std::string& path);

}  // namespace dxf2d
