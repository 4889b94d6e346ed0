#include "app/output/output_file.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "app/cli/file_path.h"
#include "app/cli/path_separators.h"
#include "app/cli/translation.h"
#include "app/output/whole_write.h"
#include "app/output/windows_file.h"
#include "app/process/own_descriptor.h"
#include "platform/path_text.h"
#include "platform/windows_path.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

std::string fileNameOf(const std::string& path) { return filePath(path).filename().string(); }

WindowsHandle openFor(const std::string& path, DWORD access) {
  return WindowsHandle(CreateFileW(windowsPath(path).c_str(), access, kShareAll, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

[[noreturn]] void failPublishing(const std::string& name, int error) {
  if (error == EEXIST) {
    failExisting(name);
  }
  if (error == ENOENT) {
    throw OutputError(kExitWriteFailed,
                      {name, tr("cannot be written: another program removed its temporary file"),
                       tr("try again, or choose another directory")});
  }
  failWriting(name, error);
}

}  // namespace

std::string followLinks(const std::string& path) {
  const WindowsHandle file = openFor(path, FILE_READ_ATTRIBUTES);
  if (!file.IsOpen()) {
    return path;
  }
  std::wstring followed(32'768, L'\0');
  followed.resize(GetFinalPathNameByHandleW(file.Get(), followed.data(),
                                            static_cast<DWORD>(followed.size()), 0));
  return followed.empty() ? path : pathToBytes(frameworkString(followed));
}

OutputFile::OutputFile(const std::string& path, Existing existing)
    : name_(path), existing_(existing) {
  if (name_.empty()) {
    failCreating("''", tr("the name is empty"), tr("give the file a name"));
  }
  std::error_code none;
  const std::filesystem::file_status status = std::filesystem::status(filePath(name_), none);
  if (kPathSeparators.find(name_.back()) != std::string_view::npos ||
      std::filesystem::is_directory(status)) {
    failCreating(name_, tr("it is a directory"), tr("name a file in it"));
  }
  inPlace_ = ownDescriptor(name_) || isDevice(name_);
  if (inPlace_) {
    target_ = name_;
    path_ = name_;
    return;
  }
  target_ = followLinks(name_);
  if (std::filesystem::exists(status)) {
    CheckFileThere();
  }
  work_.emplace(directory_, target_, name_);
  path_ = work_->Path();
}

OutputFile::~OutputFile() = default;

// Asked first, since a replacement that fails halfway may leave files behind.
void OutputFile::CheckFileThere() {
  if (existing_ == Existing::kKeep) {
    failExisting(name_);
  }
  const WindowsHandle file = openFor(target_, GENERIC_WRITE | DELETE);
  if (file.IsOpen()) {
    return;
  }
  if (GetLastError() == ERROR_SHARING_VIOLATION) {
    failCreating(name_, tr("another program is writing it"),
                 tr("wait for that program or choose another name"));
  }
  failCreating(name_, tr("the existing file is not writable"),
               tr("change its permissions or choose another name"));
}

void OutputFile::OpenInPlace() {
  const std::optional<int> own = ownDescriptor(target_);
  file_ =
      Descriptor(own ? _dup(*own) : _wopen(windowsPath(target_).c_str(), _O_WRONLY | _O_BINARY));
  if (!file_.IsOpen()) {
    failCreating(name_, reasonOf(errno), tr("choose another output"));
  }
}

bool OutputFile::IsStandardOutput() const { return inPlace_ && ownDescriptor(target_) == 1; }

void OutputFile::Write(std::string_view bytes) {
  if (!inPlace_) {
    if (const int error = appendTo(path_, bytes); error != 0) {
      failWriting(name_, error);
    }
    return;
  }
  if (!file_.IsOpen()) {
    OpenInPlace();
  }
  writeWhole(file_.Number(), bytes, name_);
}

void OutputFile::Commit() {
  if (inPlace_) {
    if (file_.Close() != 0) {
      failWriting(name_, errno);
    }
    return;
  }
  if (const int error = work_->Settle(); error != 0) {
    failWriting(name_, error);
  }
  const bool replaces = existing_ == Existing::kReplace;
  if (const int error = work_->Publish(fileNameOf(target_), replaces); error != 0) {
    failPublishing(name_, error);
  }
  work_.reset();
}

}  // namespace dxf2d
