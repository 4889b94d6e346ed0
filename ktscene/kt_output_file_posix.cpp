#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "ktscene/kt_output_file.h"

namespace {

[[noreturn]] void fail(int error, const std::string& name, const char* what) {
  throw std::system_error(error, std::generic_category(), name + ": " + what);
}

// Where the links at `path` lead, whether or not there is a file.
std::string followLinks(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path followed = path;
  std::error_code error;
  for (int links = 0; fs::is_symlink(fs::symlink_status(followed, error)); ++links) {
    if (links == kMostLinks) {
      fail(ELOOP, path, "cannot be created");
    }
    const fs::path next = fs::read_symlink(followed, error);
    if (error) {
      fail(error.value(), path, "cannot be created");
    }
    followed = next.is_absolute() ? next : followed.parent_path() / next;
  }
  return followed.string();
}

std::string directoryOf(const std::string& path) {
  const std::string directory = std::filesystem::path(path).parent_path().string();
  return directory.empty() ? "." : directory;
}

// The rights that open would give a new file. The mask can only be read by setting it, which other
// threads would notice.
mode_t rightsOfNewFile(const std::string& beside) {
  const std::string probe = beside + "~";
  struct stat status {};
  const int file = open(probe.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  const bool isKnown = file >= 0 && fstat(file, &status) == 0;
  if (file >= 0) {
    close(file);
    unlink(probe.c_str());
  }
  return isKnown ? status.st_mode & 0777U : 0600U;
}

}  // namespace

struct KtOutputFile::State {
  std::string name;
  std::string target;
  // The temporary file, or the target where that is written in place.
  std::string path;
  int file = -1;
  bool isInPlace = false;
  bool isDone = false;
};

KtOutputFile::KtOutputFile(const std::string& path) : state_(std::make_unique<State>()) {
  state_->name = path;
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    fail(EISDIR, path, "cannot be created");
  }
  if (exists && !S_ISREG(status.st_mode)) {
    // Opened when there is something to write: a FIFO waits for its reader.
    state_->path = path;
    state_->isInPlace = true;
    return;
  }
  if (exists && access(path.c_str(), W_OK) != 0) {
    fail(errno, path, "cannot be replaced");
  }
  state_->target = followLinks(path);
  std::string temporary = directoryOf(state_->target) + "/." +
                          std::filesystem::path(state_->target).filename().string() + ".XXXXXX";
  state_->file = mkostemp(temporary.data(), O_CLOEXEC);
  if (state_->file < 0) {
    fail(errno, path, "cannot be created");
  }
  state_->path = temporary;
  fchmod(state_->file, exists ? status.st_mode & 07777U : rightsOfNewFile(temporary));
}

KtOutputFile::~KtOutputFile() {
  if (state_->file >= 0) {
    close(state_->file);
  }
  if (!state_->isInPlace && !state_->isDone) {
    unlink(state_->path.c_str());
  }
}

const std::string& KtOutputFile::Path() const { return state_->path; }

void KtOutputFile::Write(std::string_view bytes) {
  if (state_->file < 0) {
    state_->file = open(state_->path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  }
  while (!bytes.empty()) {
    const ssize_t written =
        state_->file < 0 ? ssize_t{-1} : write(state_->file, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      fail(errno, state_->name, "cannot be written");
    }
  }
}

void KtOutputFile::Commit() {
  if (!state_->isInPlace) {
    if (fsync(state_->file) != 0 || rename(state_->path.c_str(), state_->target.c_str()) != 0) {
      fail(errno, state_->name, "cannot be written");
    }
    state_->isDone = true;
    // So that the name is on the disk, too; without it the file is still whole.
    const int directory = open(directoryOf(state_->target).c_str(), O_RDONLY | O_CLOEXEC);
    if (directory >= 0) {
      fsync(directory);
      close(directory);
    }
  }
  const int file = state_->file;
  state_->file = -1;
  if (file >= 0 && close(file) != 0 && errno != EINTR) {
    fail(errno, state_->name, "cannot be written");
  }
}
