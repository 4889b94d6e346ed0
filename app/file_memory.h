// How much memory a file may take.
#pragma once

#include <cstdint>
#include <string>

// In bytes, for reading the file at `path` and making something of it. A model takes ten to twenty
// times its size in its file; the rest is room for packed and referenced files. A file that
// announces more than it can hold is stopped there, instead of taking all the memory there is.
std::uint64_t memoryForFile(const std::string& path);
