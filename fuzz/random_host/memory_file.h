// A drawing's file that never reaches a disk.
#pragma once

#include <string>

// A file in memory that programs open by its path; it ends with the object.
class MemoryFile {
 public:
  // Ends the process when the system has no such files.
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const std::u16string& Path() const { return path_; }
  std::string Bytes() const;

 private:
  int descriptor_;
  std::u16string path_;
};
