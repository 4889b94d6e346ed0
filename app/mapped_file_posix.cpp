#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>

#include "app/mapped_file.h"
#include "app/output_file.h"

MappedFile::MappedFile(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    throw OutputError(kExitWriteFailed, "cannot read '" + path + "' back: " +
                                            std::generic_category().message(errno) + "; mend that");
  }
  struct stat file {};
  if (fstat(descriptor, &file) == 0 && S_ISREG(file.st_mode) && file.st_size > 0) {
    const std::size_t size = static_cast<std::size_t>(file.st_size);
    void* bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
    if (bytes == MAP_FAILED) {
      close(descriptor);
      throw std::bad_alloc();
    }
    bytes_ = {static_cast<const char*>(bytes), size};
  }
  close(descriptor);
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}
