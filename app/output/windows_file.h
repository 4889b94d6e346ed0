// Files of Windows by their paths in UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "app/process/windows_handle.h"

namespace dxf2d {

// The error of the C library that stands for one of Windows (GetLastError), by which messages say
// what is wrong.
int errnoOf(DWORD error);

// Appends bytes to a file that is there. Returns 0, or an errno.
int appendTo(const std::string& path, std::string_view bytes);

// NUL, CON and the like, which stand in every directory.
bool isDevice(const std::string& path);

}  // namespace dxf2d
