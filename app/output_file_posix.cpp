#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "app/output_file.h"

namespace {

std::string reasonOf(int error) { return std::generic_category().message(error); }

std::string directoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

[[noreturn]] void failCreating(const std::string& path, const std::string& reason) {
  throw OutputError(kExitOutputNotMade, "cannot create '" + path + "': " + reason);
}

[[noreturn]] void failExisting(const std::string& path) {
  throw OutputError(kExitOutputExists, "'" + path +
                                           "' exists; give --force to replace it, or choose "
                                           "another name");
}

// `path` as the user named it, in the directory of `target`.
[[noreturn]] void failCreatingBeside(const std::string& path, const std::string& target,
                                     int error) {
  const std::string directory = "the directory '" + directoryOf(target) + "' ";
  switch (error) {
    case ENOENT:
      failCreating(path, directory + "does not exist; create it or choose another");
    case ENOTDIR:
      failCreating(path, "'" + directoryOf(target) + "' is no directory; choose another");
    case EACCES:
    case EPERM:
    case EROFS:
      failCreating(path,
                   directory + "may not be written; change its permissions or choose another");
    case ENAMETOOLONG:
      failCreating(path, "the name is too long; choose a shorter one");
    case ELOOP:
      failCreating(path, "its symbolic links lead in a circle; mend them or choose another name");
    default:
      failCreating(path, reasonOf(error) + "; mend that or choose another place");
  }
}

[[noreturn]] void failWriting(const std::string& path, int error) {
  throw OutputError(kExitWriteFailed, "cannot write '" + path + "': " + reasonOf(error) +
                                          "; mend that or choose another place");
}

template <typename Call>
auto retryInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// The descriptor of this process that `path` stands for, if any: what it was started with may be a
// plain file, and goes on where that has come to; to open or to replace the file would miss that.
std::optional<int> ownDescriptor(std::string_view path) {
  if (path == "/dev/stdout") return STDOUT_FILENO;
  if (path == "/dev/stderr") return STDERR_FILENO;
  for (const std::string_view directory : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!path.starts_with(directory)) continue;
    int number = 0;
    const char* end = path.data() + path.size();
    const auto [stopped, error] = std::from_chars(path.data() + directory.size(), end, number);
    if (error == std::errc() && stopped == end && number >= 0) return number;
  }
  return std::nullopt;
}

bool isOpenForWriting(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

std::string temporaryName(const std::string& target) {
  // Short whatever the target is called, so that a name of the greatest length has its temporary.
  std::random_device random;
  char name[64];
  std::snprintf(name, sizeof name, "/.dxf2d-%ld-%08x%08x.tmp", static_cast<long>(getpid()),
                static_cast<unsigned>(random()), static_cast<unsigned>(random()));
  const std::string directory = directoryOf(target);
  return directory == "/" ? std::string(name) : directory + name;
}

// A name in a directory is on the disk once the directory is.
int syncDirectoryOf(const std::string& path) {
  const Descriptor directory(retryInterrupted(
      [&] { return open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  // One may be allowed to make files in a directory that one may not read.
  if (!directory.IsOpen()) return 0;
  const int result = retryInterrupted([&] { return fsync(directory.Number()); });
  // Some file systems cannot, and need not.
  return result == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

// Fails with EEXIST where a file has come in the meantime.
int renameToNewName(const std::string& from, const std::string& to) {
  const int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  const bool cannot = result != 0 && (errno == EINVAL || errno == ENOSYS);
  if (!cannot) return result;
  // The next best on file systems that know no such thing.
  if (access(to.c_str(), F_OK) == 0) {
    errno = EEXIST;
    return -1;
  }
  return rename(from.c_str(), to.c_str());
}

}  // namespace

std::string followLinks(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path followed = path;
  std::error_code none;
  for (int links = 0; fs::is_symlink(fs::symlink_status(followed, none)); ++links) {
    if (ownDescriptor(followed.native())) break;
    if (links == kMostLinks) failCreatingBeside(path, path, ELOOP);
    std::error_code error;
    const fs::path next = fs::read_symlink(followed, error);
    if (error) failCreatingBeside(path, followed.string(), error.value());
    followed = next.is_absolute() ? next : followed.parent_path() / next;
  }
  return followed.string();
}

OutputFile::OutputFile(const std::string& path, Existing existing)
    : name_(path), existing_(existing) {
  if (name_.empty()) failCreating(name_, "the name is empty; give the file a name");
  if (name_.find('\0') != std::string::npos) failCreating(name_, "the name holds a zero byte");
  struct stat link {};
  if (lstat(name_.c_str(), &link) != 0 && errno != ENOENT) {
    failCreatingBeside(name_, name_, errno);
  }
  struct stat file {};
  const bool exists = stat(name_.c_str(), &file) == 0;
  if (name_.back() == '/' || (exists && S_ISDIR(file.st_mode))) {
    failCreating(name_, "that is a directory; name a file in it");
  }
  target_ = followLinks(name_);
  const std::optional<int> own = ownDescriptor(target_);
  if (own && !isOpenForWriting(*own)) {
    failCreating(name_, "it is not open for writing; choose another");
  }
  straight_ = own || (exists && !S_ISREG(file.st_mode));
  if (straight_) {
    path_ = name_;
    return;
  }
  if (exists) CheckFileThere();
  CreateTemporary();
  // A failure leaves the permissions of a new file, which is no reason to have no output.
  if (exists) static_cast<void>(fchmod(file_.Number(), file.st_mode & 0777));
}

OutputFile::~OutputFile() {
  if (temporary_) unlink(path_.c_str());
}

void OutputFile::CheckFileThere() {
  if (existing_ == Existing::kKeep) failExisting(name_);
  if (access(target_.c_str(), W_OK) != 0) {
    failCreating(name_,
                 "the file there may not be written; change its permissions or choose another "
                 "name");
  }
  replaced_ =
      Descriptor(retryInterrupted([&] { return open(target_.c_str(), O_WRONLY | O_CLOEXEC); }));
  if (!replaced_.IsOpen()) {
    failCreating(name_, reasonOf(errno) + "; mend that or choose another name");
  }
  // File systems that know no locks have nobody who could hold one.
  const int locked = retryInterrupted([&] { return flock(replaced_.Number(), LOCK_EX | LOCK_NB); });
  if (locked != 0 && errno == EWOULDBLOCK) {
    failCreating(name_, "another program is writing it; wait for that or choose another name");
  }
}

void OutputFile::CreateTemporary() {
  constexpr int kAttempts = 100;
  temporary_.emplace();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    path_ = temporaryName(target_);
    // Not mkstemp: the file ends under the user's name and takes the permissions of the umask.
    file_ = Descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (file_.IsOpen()) return;
    if (errno != EEXIST && errno != EINTR) break;
  }
  failCreatingBeside(name_, target_, errno);
}

// Put off until there is something to write: opening a FIFO waits for its reader.
void OutputFile::OpenStraight() {
  const std::optional<int> own = ownDescriptor(target_);
  file_ = Descriptor(retryInterrupted([&] {
    return own ? fcntl(*own, F_DUPFD_CLOEXEC, 0)
               : open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  }));
  if (!file_.IsOpen()) failCreating(name_, reasonOf(errno) + "; choose another");
}

bool OutputFile::IsStandardOutput() const {
  if (!straight_) return false;
  const std::optional<int> own = ownDescriptor(target_);
  struct stat output {};
  struct stat file {};
  return fstat(STDOUT_FILENO, &output) == 0 &&
         (own ? fstat(*own, &file) : stat(path_.c_str(), &file)) == 0 &&
         output.st_dev == file.st_dev && output.st_ino == file.st_ino;
}

void OutputFile::Write(std::string_view bytes) {
  if (!file_.IsOpen()) OpenStraight();
  while (!bytes.empty()) {
    const ssize_t count =
        retryInterrupted([&] { return write(file_.Number(), bytes.data(), bytes.size()); });
    if (count < 0 && errno == EAGAIN) {
      // Others may have set a pipe to answer rather than to wait.
      pollfd room{file_.Number(), POLLOUT, 0};
      poll(&room, 1, -1);
      continue;
    }
    // A device that takes nothing would be asked forever.
    if (count <= 0) failWriting(name_, count == 0 ? EIO : errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void OutputFile::Commit() {
  if (!straight_ && retryInterrupted([&] { return fsync(file_.Number()); }) != 0) {
    failWriting(name_, errno);
  }
  // Interrupted, it is closed all the same.
  if (file_.Close() != 0 && errno != EINTR) failWriting(name_, errno);
  if (!straight_) PutInPlace();
}

void OutputFile::PutInPlace() {
  const bool replaces = existing_ == Existing::kReplace;
  const int renamed = retryInterrupted([&] {
    return replaces ? rename(path_.c_str(), target_.c_str()) : renameToNewName(path_, target_);
  });
  if (renamed != 0 && errno == EEXIST && !replaces) failExisting(name_);
  if (renamed != 0) failWriting(name_, errno);
  const int error = syncDirectoryOf(target_);
  temporary_.reset();
  if (error != 0) failWriting(name_, error);
}
