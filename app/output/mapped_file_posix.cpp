#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>

#include "app/cli/translation.h"
#include "app/output/mapped_file.h"
#include "app/output/output_failures.h"
#include "app/process/descriptor.h"

namespace dxf2d {

namespace {

[[noreturn]] void failReading(const std::string& name, int error) {
  if (error == ENOMEM) {
    throw std::bad_alloc();
  }
  throw OutputError(kExitWriteFailed,
                    {name, tr("cannot be read back: %1", {reasonOf(error)}), checkDisk()});
}

}  // namespace

MappedFile::MappedFile(const std::string& path, const std::string& name) {
  const Descriptor file(retryInterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
    failReading(name, errno);
  }
  if (!S_ISREG(status.st_mode) || status.st_size == 0) {
    return;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void* bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file.Number(), 0);
  if (bytes == MAP_FAILED) {
    failReading(name, errno);
  }
  bytes_ = {static_cast<const char*>(bytes), size};
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) {
    munmap(const_cast<char*>(bytes_.data()), bytes_.size());
  }
}

}  // namespace dxf2d
