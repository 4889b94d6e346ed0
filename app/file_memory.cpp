#include "app/file_memory.h"

#include <filesystem>
#include <system_error>

std::uint64_t memoryForFile(const std::string& path) {
  constexpr std::uint64_t kRoom = std::uint64_t{2} << 30;
  constexpr std::uint64_t kTimesFileSize = 64;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return kRoom + (error ? 0 : kTimesFileSize * size);
}
