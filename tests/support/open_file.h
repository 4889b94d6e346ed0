// Files that this process is writing.
#pragma once

#include <optional>
#include <string>

// The bytes that have reached the file at `path`, even if a CFile of this process has it open;
// nothing when it cannot be read.
std::optional<std::string> readOpenFile(const std::string& path);
