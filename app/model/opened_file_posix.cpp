#include "app/model/opened_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "app/process/descriptor.h"

namespace dxf2d {

namespace {

OpenedFile::Kind kindOf(const struct stat& status) {
  return S_ISREG(status.st_mode)   ? OpenedFile::Kind::kRegular
         : S_ISDIR(status.st_mode) ? OpenedFile::Kind::kDirectory
                                   : OpenedFile::Kind::kOther;
}

}  // namespace

OpenedFile::OpenedFile(const std::string& path) {
  Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
    return;
  }
  kind_ = kindOf(status);
  stream_ = fdopen(file.Number(), "rb");
  if (stream_ != nullptr) {
    static_cast<void>(file.Release());
    // From the descriptor, since a stream need not have one.
    state_ = {static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
              status.st_mtim.tv_nsec};
  }
}

OpenedFile::~OpenedFile() {
  if (stream_ != nullptr) {
    std::fclose(stream_);
  }
}

OpenedFile::OpenedFile(OpenedFile&& other) noexcept
    : stream_(std::exchange(other.stream_, nullptr)), kind_(other.kind_), state_(other.state_) {}

bool OpenedFile::Find(const std::string& path, Kind& kind) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  kind = kindOf(status);
  return exists;
}

bool OpenedFile::Read(std::FILE* stream, State& state) {
  struct stat now {};
  const bool isKnown = fstat(fileno(stream), &now) == 0;
  state = {static_cast<std::uint64_t>(now.st_size), now.st_mtim.tv_sec, now.st_mtim.tv_nsec};
  return isKnown;
}

bool OpenedFile::HasChanged() const {
  State now;
  return Read(stream_, now) && now != state_;
}

bool OpenedFile::Seek(std::uint64_t offset, int whence) const {
  return fseeko(stream_, static_cast<off_t>(offset), whence) == 0;
}

std::uint64_t OpenedFile::Tell() const { return static_cast<std::uint64_t>(ftello(stream_)); }

}  // namespace dxf2d
