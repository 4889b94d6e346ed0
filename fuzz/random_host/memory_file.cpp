#include "fuzz/random_host/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/require.h"
#include "platform/path_text.h"

MemoryFile::MemoryFile()
    : descriptor_(memfd_create("drawing", MFD_CLOEXEC)),
      path_(pathFromBytes("/proc/self/fd/" + std::to_string(descriptor_))) {
  require(descriptor_ >= 0, "the system has files in memory");
}

MemoryFile::~MemoryFile() { close(descriptor_); }

std::string MemoryFile::Bytes() const {
  const off_t size = lseek(descriptor_, 0, SEEK_END);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  require(pread(descriptor_, bytes.data(), bytes.size(), 0) == size, "the file can be read");
  return bytes;
}
