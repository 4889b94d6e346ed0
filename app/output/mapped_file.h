// A file's bytes in memory.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dxf2d {

// Maps an existing file for reading; the bytes are valid as long as the object. Empty for anything
// but a regular file.
class MappedFile {
 public:
  // Throws OutputError, with `name` for the file, when it cannot be opened, std::bad_alloc when
  // there is no room for it.
  MappedFile(const std::string& path, const std::string& name);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  std::string_view Bytes() const { return bytes_; }

 private:
  std::string_view bytes_;
};

}  // namespace dxf2d
