// A whole file in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace dxf2d {

// Not a string, whose bytes would be written twice.
struct FileText {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;

  std::string_view View() const { return {bytes.get(), size}; }
};

// Throws DxfError when the file cannot be read, LimitError when it is longer than 512 MiB.
FileText readWhole(const std::string& path);

}  // namespace dxf2d
