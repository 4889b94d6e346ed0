#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
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

[[noreturn]] void failCreatingBeside(const std::string& path, int error) {
  const std::string directory = "the directory '" + directoryOf(path) + "' ";
  switch (error) {
    case ENOENT:
      failCreating(path, directory + "does not exist; create it or choose another");
    case ENOTDIR:
      failCreating(path, "'" + directoryOf(path) + "' is no directory; choose another");
    case EACCES:
    case EPERM:
    case EROFS:
      failCreating(path,
                   directory + "may not be written; change its permissions or choose another");
    case ENAMETOOLONG:
      failCreating(path, "the name is too long; choose a shorter one");
    default:
      failCreating(path, reasonOf(error) + "; mend that or choose another place");
  }
}

[[noreturn]] void failWriting(const std::string& path, int error) {
  throw OutputError(kExitWriteFailed, "cannot write '" + path + "': " + reasonOf(error) +
                                          "; mend that or choose another place");
}

bool startsWith(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

// /dev/stdout and its like are links to whatever the process has open, a plain file included; to
// replace the link would take it from every other program.
bool isSystemLink(const std::string& path, const struct stat& link) {
  return S_ISLNK(link.st_mode) && (startsWith(path, "/dev/") || startsWith(path, "/proc/"));
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

}  // namespace

OutputFile::OutputFile(std::string path) : target_(std::move(path)) {
  if (target_.empty()) failCreating(target_, "the name is empty; give the file a name");
  struct stat link {};
  struct stat file {};
  const bool isLink = lstat(target_.c_str(), &link) == 0;
  if (!isLink && errno != ENOENT) failCreatingBeside(target_, errno);
  const bool exists = stat(target_.c_str(), &file) == 0;
  if (target_.back() == '/' || (exists && S_ISDIR(file.st_mode))) {
    failCreating(target_, "that is a directory; name a file in it");
  }
  straight_ = exists && (!S_ISREG(file.st_mode) || isSystemLink(target_, link));
  if (straight_) {
    path_ = target_;
    return;
  }
  const bool replacesFile = isLink && S_ISREG(link.st_mode);
  if (replacesFile && access(target_.c_str(), W_OK) != 0) {
    failCreating(target_,
                 "the file there may not be written; change its permissions or choose "
                 "another name");
  }
  CreateTemporary();
  // A failure leaves the permissions of a new file, which is no reason to have no output.
  if (replacesFile && fchmod(descriptor_, file.st_mode & 0777) != 0) errno = 0;
}

OutputFile::~OutputFile() {
  Close();
  if (temporary_) unlink(path_.c_str());
}

void OutputFile::CreateTemporary() {
  constexpr int kAttempts = 100;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    path_ = temporaryName(target_);
    // Not mkstemp: the file ends under the user's name and takes the permissions of the umask.
    descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) {
      temporary_ = true;
      return;
    }
    if (errno != EEXIST && errno != EINTR) break;
  }
  failCreatingBeside(target_, errno);
}

// Put off until there is something to write: opening a FIFO waits for its reader.
void OutputFile::OpenStraight() {
  do {
    descriptor_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  } while (descriptor_ < 0 && errno == EINTR);
  if (descriptor_ < 0) failCreating(target_, reasonOf(errno) + "; choose another");
}

void OutputFile::Write(std::string_view bytes) {
  if (descriptor_ < 0) OpenStraight();
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor_, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      failWriting(target_, errno);
    }
  }
}

void OutputFile::Commit() {
  if (straight_) {
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor >= 0 && close(descriptor) != 0 && errno != EINTR) failWriting(target_, errno);
    return;
  }
  if (fsync(descriptor_) != 0) failWriting(target_, errno);
  if (close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) failWriting(target_, errno);
  if (rename(path_.c_str(), target_.c_str()) != 0) failWriting(target_, errno);
  temporary_ = false;
}

void OutputFile::Close() {
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}
