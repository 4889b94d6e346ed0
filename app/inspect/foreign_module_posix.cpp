#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/inspect/foreign_module.h"
#include "app/inspect/windows_module.h"

namespace dxf2d {

namespace {

// Beyond what modules take.
constexpr std::uintmax_t kLargestModule = std::uintmax_t{1} << 30;

}  // namespace

std::optional<ForeignModule> foreignModule(const std::string& path) {
  std::error_code error;
  // Nothing else is opened: a FIFO would be waited for.
  if (!std::filesystem::is_regular_file(path, error) ||
      std::filesystem::file_size(path, error) > kLargestModule) {
    return std::nullopt;
  }
  std::ifstream file(path, std::ios::binary);
  char start[2] = {};
  if (!file.read(start, sizeof start) || start[0] != 'M' || start[1] != 'Z') {
    return std::nullopt;
  }
  std::string bytes(start, sizeof start);
  bytes.append(std::istreambuf_iterator<char>(file), {});
  if (std::optional<std::vector<std::string>> exports = windowsExports(bytes)) {
    return ForeignModule{"Windows", *std::move(exports)};
  }
  return std::nullopt;
}

}  // namespace dxf2d
