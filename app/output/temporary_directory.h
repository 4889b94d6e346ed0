// The directory for temporary files.
#pragma once

#include <filesystem>
#include <system_error>

namespace dxf2d {

// Returns the directory that TMPDIR names, or /tmp when it names none.
inline std::filesystem::path temporaryDirectory() {
  std::error_code error;
  const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
  return error ? std::filesystem::path("/tmp") : directory;
}

}  // namespace dxf2d
