#include "app/output/work_file.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <utility>

#include "app/cli/translation.h"
#include "app/output/output_failures.h"
#include "app/output/temporary_directory.h"

namespace dxf2d {

namespace {

constexpr mode_t kOwnerAlone = 0600;

constexpr int kAttempts = 100;

// Short whatever the target's name, so that the longest allowed name still has a temporary.
std::string newTemporaryName() {
  std::random_device random;
  char name[64];
  std::snprintf(name, sizeof name, ".dxf2d-%ld-%08x%08x.tmp", static_cast<long>(getpid()),
                static_cast<unsigned>(random()), static_cast<unsigned>(random()));
  return name;
}

std::string pathOfDescriptor(int number) { return "/proc/self/fd/" + std::to_string(number); }

// False without /proc.
bool hasPathOfDescriptor(int number) {
  struct stat there {};
  struct stat ours {};
  return stat(pathOfDescriptor(number).c_str(), &there) == 0 && fstat(number, &ours) == 0 &&
         there.st_dev == ours.st_dev && there.st_ino == ours.st_ino;
}

// An umask may have left the owner without rights. Returns false, with errno set, if that cannot
// be changed.
bool makeUsable(int number) {
  struct stat status {};
  if (fstat(number, &status) != 0) {
    return false;
  }
  return (status.st_mode & kOwnerAlone) == kOwnerAlone ||
         retryInterrupted([&] { return fchmod(number, kOwnerAlone); }) == 0;
}

// A file without a name in the directory for temporary files. Not open, with errno set, when it
// cannot be.
Descriptor openScratchFile() {
  const OutputDirectory directory(temporaryDirectory() / "");
  if (!directory.IsOpen()) {
    return {};
  }
  const std::string name = newTemporaryName();
  Descriptor file(
      openat(directory.Number(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerAlone));
  if (file.IsOpen() && unlinkat(directory.Number(), name.c_str(), 0) != 0) {
    file.Close();
  }
  return file;
}

// Returns 0, or an errno.
int copyWhole(int from, int to) {
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
  off_t begin = 0;
  ssize_t count = 1;
  while (count > 0) {
    count = retryInterrupted([&] { return sendfile(to, from, &begin, kMostAtOnce); });
  }
  return count < 0 ? errno : 0;
}

// Fails with EEXIST when a file of that name has appeared in the meantime.
int renameToNewName(int directory, const std::string& from, const std::string& to) {
  const int result = renameat2(directory, from.c_str(), directory, to.c_str(), RENAME_NOREPLACE);
  const bool cannot = result != 0 && (errno == EINVAL || errno == ENOSYS);
  if (!cannot) {
    return result;
  }
  // The next best on file systems without this operation.
  if (faccessat(directory, to.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
    errno = EEXIST;
    return -1;
  }
  return renameat(directory, from.c_str(), directory, to.c_str());
}

}  // namespace

WorkFile::WorkFile(const OutputDirectory& directory, const std::string& target,
                   const std::string& name)
    : directory_(directory) {
  if (CreateUnnamed()) {
    return;
  }
  // What is made there could not be removed.
  if (directory_.IsAppendOnly()) {
    failCreating(name, tr("the directory '%1' is append-only", {directoryOf(target)}),
                 tr("choose another"));
  }
  if (const int error = CreateNamed(); error != 0) {
    failCreatingBeside(name, target, error);
  }
  MoveElsewhere();
  CheckPath(target, name);
}

WorkFile::~WorkFile() { Discard(); }

// Returns false where there are no such files, or no way to name them later.
bool WorkFile::CreateUnnamed() {
  file_ = Descriptor(retryInterrupted([&] {
    return openat(directory_.Number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, kOwnerAlone);
  }));
  if (!file_.IsOpen() || !hasPathOfDescriptor(Number()) || !makeUsable(Number())) {
    file_.Close();
    return false;
  }
  path_ = pathOfDescriptor(Number());
  return true;
}

// Returns 0, or an errno: EPERM in a directory in which the name could not be removed.
int WorkFile::CreateNamed() {
  if (directory_.IsAppendOnly()) {
    return EPERM;
  }
  errno = EEXIST;
  for (int attempt = 0; attempt < kAttempts && (errno == EEXIST || errno == EINTR); ++attempt) {
    temporaryName_ = newTemporaryName();
    file_ = Descriptor(openat(directory_.Number(), temporaryName_.c_str(),
                              O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerAlone));
    if (file_.IsOpen()) {
      break;
    }
  }
  if (!file_.IsOpen()) {
    const int error = errno;
    temporaryName_.clear();
    return error;
  }
  if (!makeUsable(Number())) {
    const int error = errno;
    Discard();
    return error;
  }
  path_ = pathOfDescriptor(Number());
  return 0;
}

// A name beside the output for as long as the drawing is made could be taken, and in a directory
// that becomes append-only not be removed. It has shown that a file can be made there.
void WorkFile::MoveElsewhere() {
  Descriptor file = openScratchFile();
  if (!file.IsOpen() || !hasPathOfDescriptor(file.Number()) || !makeUsable(file.Number())) {
    return;
  }
  Discard();
  file_ = std::move(file);
  path_ = pathOfDescriptor(Number());
  isElsewhere_ = true;
}

// Without /proc the name has to do, where nobody else can give it to another file.
void WorkFile::CheckPath(const std::string& target, const std::string& name) {
  if (hasPathOfDescriptor(Number())) {
    return;
  }
  path_ = directoryOf(target) + "/" + temporaryName_;
  if (directory_.IsSharedWithOthers()) {
    Discard();
    failCreating(name, tr("other users may write to its directory, and /proc is not there"),
                 tr("choose a directory of your own"));
  }
}

int WorkFile::Settle() {
  if (!isElsewhere_) {
    return 0;
  }
  const Descriptor scratch = std::move(file_);
  if (const int error = CreateNamed(); error != 0) {
    return error;
  }
  isElsewhere_ = false;
  return copyWhole(scratch.Number(), Number());
}

// What others have put in the place of the file is theirs.
void WorkFile::Discard() {
  if (!temporaryName_.empty() && !directory_.HasAnother(temporaryName_, Number())) {
    unlinkat(directory_.Number(), temporaryName_.c_str(), 0);
  }
  temporaryName_.clear();
}

// Gives the file, which has no name, one that is new. Returns 0, or an errno.
int WorkFile::LinkAs(const std::string& name) const {
  const int linked = retryInterrupted([&] {
    return linkat(AT_FDCWD, path_.c_str(), directory_.Number(), name.c_str(), AT_SYMLINK_FOLLOW);
  });
  return linked == 0 ? 0 : errno;
}

// Only a file with a name can replace another. Returns 0, or an errno.
int WorkFile::GiveTemporaryName() {
  // The name could not be changed or removed.
  if (directory_.IsAppendOnly()) {
    return EPERM;
  }
  int error = EEXIST;
  for (int attempt = 0; attempt < kAttempts && error == EEXIST; ++attempt) {
    const std::string name = newTemporaryName();
    error = LinkAs(name);
    if (error == 0) {
      temporaryName_ = name;
    }
  }
  return error;
}

int WorkFile::Publish(const std::string& fileName, bool replaces) {
  if (temporaryName_.empty() && !replaces) {
    return LinkAs(fileName);
  }
  if (temporaryName_.empty()) {
    if (const int error = GiveTemporaryName(); error != 0) {
      return error;
    }
  }
  if (!directory_.Contains(temporaryName_, Number())) {
    return ESTALE;
  }
  const int directory = directory_.Number();
  const int renamed = retryInterrupted([&] {
    return replaces ? renameat(directory, temporaryName_.c_str(), directory, fileName.c_str())
                    : renameToNewName(directory, temporaryName_, fileName);
  });
  if (renamed != 0) {
    return errno;
  }
  temporaryName_.clear();
  return 0;
}

}  // namespace dxf2d
