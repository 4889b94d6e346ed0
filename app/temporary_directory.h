// Where short-lived files go.
#pragma once

#include <filesystem>
#include <system_error>

// The directory that TMPDIR names, or /tmp when that is none.
inline std::filesystem::path temporaryDirectory() {
  std::error_code error;
  const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
  return error ? std::filesystem::path("/tmp") : directory;
}
