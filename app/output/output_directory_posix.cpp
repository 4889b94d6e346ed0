#include "app/output/output_directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "app/output/output_failures.h"

namespace dxf2d {

namespace {

Descriptor openDirectory(const std::string& path, int flags) {
  return Descriptor(
      retryInterrupted([&] { return open(path.c_str(), flags | O_DIRECTORY | O_CLOEXEC); }));
}

bool isSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace

OutputDirectory::OutputDirectory(const std::string& target)
    : directory_(openDirectory(directoryOf(target), O_RDONLY)) {
  if (!directory_.IsOpen() && errno == EACCES) {
    directory_ = openDirectory(directoryOf(target), O_PATH);
    isReadable_ = false;
  }
}

bool OutputDirectory::IsDirectoryOf(const std::string& target) const {
  struct stat there {};
  struct stat here {};
  return stat(directoryOf(target).c_str(), &there) == 0 && fstat(Number(), &here) == 0 &&
         isSameFile(there, here);
}

bool OutputDirectory::IsAppendOnly() const {
  struct statx status {};
  return statx(Number(), "", AT_EMPTY_PATH, STATX_TYPE, &status) == 0 &&
         (status.stx_attributes & STATX_ATTR_APPEND) != 0;
}

bool OutputDirectory::IsSharedWithOthers() const {
  struct stat status {};
  if (fstat(Number(), &status) != 0) {
    return true;
  }
  const bool isOthers = status.st_uid != geteuid() && status.st_uid != 0;
  const bool isWritableToOthers = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  return isOthers || (isWritableToOthers && (status.st_mode & S_ISVTX) == 0);
}

bool OutputDirectory::Contains(const std::string& name, int file) const {
  return Compare(name, file) == Comparison::kSame;
}

bool OutputDirectory::HasAnother(const std::string& name, int file) const {
  return Compare(name, file) == Comparison::kDifferent;
}

OutputDirectory::Comparison OutputDirectory::Compare(const std::string& name, int file) const {
  struct stat there {};
  struct stat ours {};
  if (fstatat(Number(), name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0 ||
      fstat(file, &ours) != 0) {
    return Comparison::kUnknown;
  }
  return isSameFile(there, ours) ? Comparison::kSame : Comparison::kDifferent;
}

int OutputDirectory::Sync() const {
  if (!isReadable_) {
    return 0;
  }
  const int result = retryInterrupted([&] { return fsync(Number()); });
  // Some file systems do not support it and do not need it.
  return result == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

}  // namespace dxf2d
