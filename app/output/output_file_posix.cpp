#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "app/cli/translation.h"
#include "app/output/file_rights.h"
#include "app/output/output_failures.h"
#include "app/output/output_file.h"
#include "app/output/whole_write.h"
#include "app/process/own_descriptor.h"

namespace dxf2d {

namespace {

bool isOpenForWriting(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

std::string fileNameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

[[noreturn]] void failMoved(const std::string& name) {
  throw OutputError(
      kExitWriteFailed,
      {name, tr("cannot be written: its directory or a link to it was changed meanwhile"),
       tr("try again, in a directory that nobody else changes")});
}

[[noreturn]] void failBlockDevice(const std::string& name) {
  throw OutputError(kExitOutputExists, {name, tr("is a block device, whose content would be lost"),
                                        tr("use --force to overwrite it, or choose another name")});
}

[[noreturn]] void failPublishing(const std::string& name, int error) {
  if (error == EEXIST) {
    failExisting(name);
  }
  if (error == ESTALE) {
    throw OutputError(kExitWriteFailed,
                      {name, tr("cannot be written: another program removed its temporary file"),
                       tr("try again, or choose another directory")});
  }
  failWriting(name, error);
}

}  // namespace

std::string followLinks(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path followed = path;
  std::error_code none;
  for (int links = 0; fs::is_symlink(fs::symlink_status(followed, none)); ++links) {
    if (ownDescriptor(followed.native())) {
      break;
    }
    if (links == kMostLinks) {
      failCreatingBeside(path, path, ELOOP);
    }
    std::error_code error;
    const fs::path next = fs::read_symlink(followed, error);
    if (error) {
      failCreatingBeside(path, followed.string(), error.value());
    }
    followed = next.is_absolute() ? next : followed.parent_path() / next;
  }
  return followed.string();
}

OutputFile::OutputFile(const std::string& path, Existing existing)
    : name_(path), existing_(existing) {
  if (name_.empty()) {
    failCreating("''", tr("the name is empty"), tr("give the file a name"));
  }
  if (name_.find('\0') != std::string::npos) {
    failCreating(name_, tr("the name contains a null character"), tr("choose another name"));
  }
  struct stat link {};
  if (lstat(name_.c_str(), &link) != 0 && errno != ENOENT) {
    failCreatingBeside(name_, name_, errno);
  }
  struct stat file {};
  const bool exists = stat(name_.c_str(), &file) == 0;
  if (name_.back() == '/' || (exists && S_ISDIR(file.st_mode))) {
    failCreating(name_, tr("it is a directory"), tr("name a file in it"));
  }
  target_ = followLinks(name_);
  const std::optional<int> own = ownDescriptor(target_);
  if (own && !isOpenForWriting(*own)) {
    failCreating(name_, tr("it is not open for writing"), tr("choose another output"));
  }
  inPlace_ = own || (exists && !S_ISREG(file.st_mode));
  if (inPlace_) {
    if (!own && S_ISBLK(file.st_mode) && existing_ == Existing::kKeep) {
      failBlockDevice(name_);
    }
    path_ = name_;
    return;
  }
  directory_ = OutputDirectory(target_);
  if (!directory_.IsOpen()) {
    failCreatingBeside(name_, target_, errno);
  }
  if (exists) {
    CheckFileThere();
  }
  work_.emplace(directory_, target_, name_);
  path_ = work_->Path();
}

OutputFile::~OutputFile() = default;

void OutputFile::CheckFileThere() {
  if (existing_ == Existing::kKeep) {
    failExisting(name_);
  }
  if (directory_.IsAppendOnly()) {
    failCreating(name_, tr("the directory '%1' is append-only", {directoryOf(target_)}),
                 tr("choose another"));
  }
  const std::string file = fileNameOf(target_);
  if (faccessat(directory_.Number(), file.c_str(), W_OK, 0) != 0) {
    failCreating(name_, tr("the existing file is not writable"),
                 tr("change its permissions or choose another name"));
  }
  replaced_ = Descriptor(retryInterrupted([&] {
    return openat(directory_.Number(), file.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
  }));
  if (!replaced_.IsOpen()) {
    failCreating(name_, reasonOf(errno), checkDisk());
  }
  // On file systems without locks nobody can hold one.
  const int locked = retryInterrupted([&] { return flock(replaced_.Number(), LOCK_EX | LOCK_NB); });
  if (locked != 0 && errno == EWOULDBLOCK) {
    failCreating(name_, tr("another program is writing it"),
                 tr("wait for that program or choose another name"));
  }
}

// Deferred until there is something to write: opening a FIFO waits for its reader.
void OutputFile::OpenInPlace() {
  const std::optional<int> own = ownDescriptor(target_);
  file_ = Descriptor(retryInterrupted([&] {
    return own ? fcntl(*own, F_DUPFD_CLOEXEC, 0)
               : open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  }));
  if (!file_.IsOpen()) {
    failCreating(name_, reasonOf(errno), tr("choose another output"));
  }
}

bool OutputFile::IsStandardOutput() const {
  if (!inPlace_) {
    return false;
  }
  const std::optional<int> own = ownDescriptor(target_);
  struct stat output {};
  struct stat file {};
  return fstat(STDOUT_FILENO, &output) == 0 &&
         (own ? fstat(*own, &file) : stat(path_.c_str(), &file)) == 0 &&
         output.st_dev == file.st_dev && output.st_ino == file.st_ino;
}

void OutputFile::Write(std::string_view bytes) {
  if (inPlace_ && !file_.IsOpen()) {
    OpenInPlace();
  }
  writeWhole(WrittenFile(), bytes, name_);
}

void OutputFile::Commit() {
  if (inPlace_) {
    // After EINTR the file is closed all the same.
    if (file_.Close() != 0 && errno != EINTR) {
      failWriting(name_, errno);
    }
    return;
  }
  if (const int error = work_->Settle(); error != 0) {
    failWriting(name_, error);
  }
  const int error = replaced_.IsOpen() ? giveRightsOf(replaced_.Number(), work_->Number())
                                       : giveRightsOfNewFile(directory_.Number(), work_->Number());
  if (error != 0) {
    failWriting(name_, error);
  }
  SyncWork();
  PutInPlace();
}

void OutputFile::SyncWork() {
  if (retryInterrupted([&] { return fsync(work_->Number()); }) != 0) {
    failWriting(name_, errno);
  }
  // Some network file systems report failed writes only when a descriptor is closed. This one is
  // still needed.
  Descriptor copy(fcntl(work_->Number(), F_DUPFD_CLOEXEC, 0));
  if (!copy.IsOpen() || (copy.Close() != 0 && errno != EINTR)) {
    failWriting(name_, errno);
  }
}

// Whether the user's name still stands for the target, in the directory that is open.
bool OutputFile::LeadsToDirectory() const {
  try {
    return followLinks(name_) == target_ && directory_.IsDirectoryOf(target_);
  } catch (const OutputError&) {
    return false;
  }
}

void OutputFile::PutInPlace() {
  if (!LeadsToDirectory()) {
    failMoved(name_);
  }
  const std::string file = fileNameOf(target_);
  const bool replaces = existing_ == Existing::kReplace;
  if (const int error = work_->Publish(file, replaces); error != 0) {
    failPublishing(name_, error);
  }
  const int error = directory_.Sync();
  // Nothing keeps others from moving the directory at the very moment.
  const bool isThere = directory_.Contains(file, work_->Number());
  if (!isThere || !LeadsToDirectory()) {
    if (isThere && !replaces) {
      unlinkat(directory_.Number(), file.c_str(), 0);
    }
    failMoved(name_);
  }
  work_.reset();
  if (error != 0) {
    failWriting(name_, error);
  }
}

}  // namespace dxf2d
