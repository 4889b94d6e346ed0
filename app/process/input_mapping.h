// An input file in memory.
#pragma once

#include <cstddef>
#include <ctime>
#include <span>
#include <string>

#include "app/process/descriptor.h"

namespace dxf2d {

// Maps a regular file for reading. The bytes are valid as long as the object, also when the file
// shrinks or its disk fails meanwhile: what cannot be had then is zeros, and IsWhole() false.
// One at a time in a process, since that takes the process's handler of SIGBUS.
class InputMapping {
 public:
  // Empty for what cannot be opened or mapped, for what is not a regular file, and for an empty
  // file. A FIFO is not waited for.
  explicit InputMapping(const std::string& path);
  ~InputMapping();
  InputMapping(const InputMapping&) = delete;
  InputMapping& operator=(const InputMapping&) = delete;

  std::span<const char> Bytes() const { return bytes_; }

  // Whether all bytes that were looked at so far were those of the file, and the file has neither
  // grown nor shrunk nor been written to since it was opened.
  bool IsWhole() const;

 private:
  Descriptor file_;
  std::span<const char> bytes_;
  timespec modified_{};
};

}  // namespace dxf2d
