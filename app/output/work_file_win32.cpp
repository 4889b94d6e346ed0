#include "app/output/work_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>

#include "app/cli/file_path.h"
#include "app/output/output_failures.h"
#include "app/output/windows_file.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

// Short whatever the target's name, so that the longest allowed name still has a temporary.
std::string newTemporaryName() {
  std::random_device random;
  char name[64];
  std::snprintf(name, sizeof name, ".dxf2d-%lu-%08x%08x.tmp", GetCurrentProcessId(),
                static_cast<unsigned>(random()), static_cast<unsigned>(random()));
  return name;
}

// A path that is marked ("\\?\") knows backslashes alone.
std::string pathBeside(const std::string& path, const std::string& name) {
  return (filePath(path).parent_path() / filePath(name)).string();
}

// Brings the bytes to the disk. Returns 0, or an errno.
int flush(const std::string& path) {
  const WindowsHandle file(CreateFileW(windowsPath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return file.IsOpen() && FlushFileBuffers(file.Get()) != 0 ? 0 : errnoOf(GetLastError());
}

}  // namespace

// It has a name, since a file without one is not to be had, and is not held open, since the plug-in
// opens it for itself alone.
WorkFile::WorkFile(const OutputDirectory& directory, const std::string& target,
                   const std::string& name)
    : directory_(directory) {
  constexpr int kAttempts = 100;
  for (int attempt = 0;; ++attempt) {
    temporaryName_ = newTemporaryName();
    path_ = pathBeside(target, temporaryName_);
    const WindowsHandle file(CreateFileW(windowsPath(path_).c_str(), GENERIC_WRITE, 0, nullptr,
                                         CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.IsOpen()) {
      return;
    }
    if (GetLastError() != ERROR_FILE_EXISTS || attempt == kAttempts) {
      const int error = errnoOf(GetLastError());
      temporaryName_.clear();
      failCreatingBeside(name, target, error);
    }
  }
}

WorkFile::~WorkFile() { Discard(); }

void WorkFile::Discard() {
  if (!temporaryName_.empty()) {
    DeleteFileW(windowsPath(path_).c_str());
  }
  temporaryName_.clear();
}

// It stands where it belongs.
int WorkFile::Settle() { return flush(path_); }

int WorkFile::Publish(const std::string& fileName, bool replaces) {
  const std::wstring from = windowsPath(path_);
  const std::wstring to = windowsPath(pathBeside(path_, fileName));
  if (GetFileAttributesW(from.c_str()) == INVALID_FILE_ATTRIBUTES) {
    return ENOENT;
  }
  // The first keeps the rights of the file that it replaces; not every file system can, and there
  // need not be one.
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0U);
  if ((!replaces || ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                 nullptr, nullptr) == 0) &&
      MoveFileExW(from.c_str(), to.c_str(), flags) == 0) {
    return errnoOf(GetLastError());
  }
  temporaryName_.clear();
  return 0;
}

}  // namespace dxf2d
