// A file of the operating system that one object has to itself. Internal to this library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dxf2d {

// While it is open, a second Open of the same file fails, by this process and by others that open
// it in this way. Each operation returns the operating system's error number, 0 for success.
class ExclusiveFile {
 public:
  ExclusiveFile();
  ~ExclusiveFile();
  ExclusiveFile(const ExclusiveFile&) = delete;
  ExclusiveFile& operator=(const ExclusiveFile&) = delete;

  // Opens `path` (UTF-16), for writing or for reading; with `create` it is made where it is
  // missing, and emptied only once it is this object's.
  long Open(const char16_t* path, bool write, bool create);
  // Writes all of it.
  long Write(const char* data, std::size_t count);
  // The file is closed even when an error is returned. Does nothing when none is open.
  long Close();

 private:
  // A descriptor or a handle.
  std::intptr_t handle_;
};

}  // namespace dxf2d
