// A file's bytes in memory.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Maps a file that was written before, for reading; the bytes are there as long as the object. What
// is no plain file is empty here.
class MappedFile {
 public:
  // Throws OutputError when it cannot be opened, std::bad_alloc when there is no room for it.
  explicit MappedFile(const std::string& path);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  std::string_view Bytes() const { return bytes_; }

 private:
  std::string_view bytes_;
};
