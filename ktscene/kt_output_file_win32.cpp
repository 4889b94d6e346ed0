#include <algorithm>
#include <filesystem>
#include <random>
#include <system_error>

#include "ktscene/kt_output_file.h"
#include "platform/path_text.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "platform/windows_text.h"

namespace {

using dxf2d::windowsPath;

[[noreturn]] void fail(DWORD error, const std::string& name, const char* what) {
  throw std::system_error(static_cast<int>(error), std::system_category(), name + ": " + what);
}

std::string pathOf(const std::wstring& path) { return pathToBytes(dxf2d::frameworkString(path)); }

// NUL, CON and the like, which stand in every directory.
bool isDevice(const std::wstring& path) {
  wchar_t complete[MAX_PATH];
  const DWORD length = GetFullPathNameW(path.c_str(), MAX_PATH, complete, nullptr);
  return length < MAX_PATH && std::wstring_view(complete, length).starts_with(LR"(\\.\)");
}

// Where the links at `path` lead; the path itself where there is no file.
std::wstring followLinks(const std::wstring& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return path;
  }
  std::wstring followed(32768, L'\0');
  followed.resize(
      GetFinalPathNameByHandleW(file, followed.data(), static_cast<DWORD>(followed.size()), 0));
  CloseHandle(file);
  return followed.empty() ? path : followed;
}

// An empty file beside the target, so that it can take the target's place in one step.
std::wstring makeTemporary(const std::wstring& target, const std::string& name) {
  const std::filesystem::path place(target);
  std::random_device random;
  constexpr int kAttempts = 100;
  for (int attempt = 0;; ++attempt) {
    const std::wstring temporary =
        (place.parent_path() /
         (L"." + place.filename().wstring() + L"." + std::to_wstring(random()) + L".tmp"))
            .wstring();
    const HANDLE file =
        CreateFileW(windowsPath(dxf2d::frameworkString(temporary)).c_str(), GENERIC_WRITE, 0,
                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      // A writer of its own opens the file for itself alone.
      CloseHandle(file);
      return temporary;
    }
    if (GetLastError() != ERROR_FILE_EXISTS || attempt == kAttempts) {
      fail(GetLastError(), name, "cannot be created");
    }
  }
}

// What keeps others from replacing the file, such as another program that has it open; 0 for
// nothing. Asked first, since a replacement that fails halfway may leave files behind.
DWORD obstacle(const std::wstring& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file =
      CreateFileW(path.c_str(), DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
    return 0;
  }
  return GetLastError() == ERROR_FILE_NOT_FOUND ? 0 : GetLastError();
}

HANDLE openToAppend(const std::wstring& path) {
  const HANDLE file = CreateFileW(windowsPath(dxf2d::frameworkString(path)).c_str(), GENERIC_WRITE,
                                  0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    SetFilePointer(file, 0, nullptr, FILE_END);
  }
  return file;
}

}  // namespace

struct KtOutputFile::State {
  std::string name;
  std::wstring target;
  // The temporary file, or the target where that is written in place.
  std::wstring place;
  std::string path;
  HANDLE file = INVALID_HANDLE_VALUE;
  bool isInPlace = false;
  bool isDone = false;

  void OpenToWrite() {
    if (file == INVALID_HANDLE_VALUE) {
      file = openToAppend(place);
    }
    if (file == INVALID_HANDLE_VALUE) {
      fail(GetLastError(), name, "cannot be written");
    }
  }
  void Close() {
    if (file != INVALID_HANDLE_VALUE) {
      CloseHandle(file);
      file = INVALID_HANDLE_VALUE;
    }
  }
};

KtOutputFile::KtOutputFile(const std::string& path) : state_(std::make_unique<State>()) {
  state_->name = path;
  const std::wstring given = windowsPath(path);
  if (isDevice(given)) {
    state_->place = given;
    state_->path = path;
    state_->isInPlace = true;
    return;
  }
  const DWORD attributes = GetFileAttributesW(given.c_str());
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (given.empty() || (exists && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)) {
    fail(ERROR_ACCESS_DENIED, path, "cannot be created");
  }
  if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    fail(ERROR_ACCESS_DENIED, path, "cannot be replaced");
  }
  state_->target = followLinks(given);
  state_->place = makeTemporary(state_->target, path);
  state_->path = pathOf(state_->place);
}

KtOutputFile::~KtOutputFile() {
  state_->Close();
  if (!state_->isInPlace && !state_->isDone) {
    DeleteFileW(windowsPath(dxf2d::frameworkString(state_->place)).c_str());
  }
}

const std::string& KtOutputFile::Path() const { return state_->path; }

void KtOutputFile::Write(std::string_view bytes) {
  state_->OpenToWrite();
  constexpr std::size_t kMost = std::size_t{64} << 20U;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), kMost));
    if (WriteFile(state_->file, bytes.data(), count, &written, nullptr) == 0) {
      fail(GetLastError(), state_->name, "cannot be written");
    }
    bytes.remove_prefix(written);
  }
}

void KtOutputFile::Commit() {
  if (state_->isInPlace) {
    state_->Close();
    return;
  }
  state_->OpenToWrite();
  if (FlushFileBuffers(state_->file) == 0) {
    fail(GetLastError(), state_->name, "cannot be written");
  }
  state_->Close();
  const std::wstring from = windowsPath(dxf2d::frameworkString(state_->place));
  const std::wstring to = windowsPath(dxf2d::frameworkString(state_->target));
  if (const DWORD error = obstacle(to); error != 0) {
    fail(error, state_->name, "cannot be replaced");
  }
  // The first keeps the rights of the file that it replaces; not every file system can.
  if (ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                   nullptr) == 0 &&
      MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ==
          0) {
    fail(GetLastError(), state_->name, "cannot be written");
  }
  state_->isDone = true;
}
