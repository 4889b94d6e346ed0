#include "tests/support/open_file.h"

#include <fstream>
#include <iterator>

std::optional<std::string> readOpenFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return std::nullopt;
  }
  return std::string{std::istreambuf_iterator<char>(file), {}};
}
