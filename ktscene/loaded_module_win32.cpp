#include <bit>

#include "ktscene/loaded_module.h"
#include "ktscene/utf_text.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

[[noreturn]] void refuse(const std::string& path, DWORD error) {
  wchar_t text[512];
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && (text[length - 1] == L' ' || text[length - 1] == L'.')) {
    --length;
  }
  throw KtTraverserError(
      path + ": cannot be loaded as a plug-in: " + toUtf8(frameworkString({text, length})) +
      " (error " + std::to_string(error) + "); name another plug-in");
}

// What stands beside the module is found too.
HMODULE open(const std::wstring& file, const std::string& path) {
  const HMODULE module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) {
    refuse(path, GetLastError());
  }
  return module;
}

// A temporary file with the bytes of the module at `path`.
std::wstring copyOf(const std::string& path) {
  wchar_t directory[MAX_PATH + 1];
  wchar_t name[MAX_PATH];
  if (GetTempPathW(MAX_PATH + 1, directory) == 0 ||
      GetTempFileNameW(directory, L"ktp", 0, name) == 0 ||
      CopyFileW(windowsPath(path).c_str(), name, FALSE) == 0) {
    refuse(path, GetLastError());
  }
  return name;
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path, bool isPrivate) {
  // Also before a private copy: the libraries that it needs are then there, though its own folder,
  // in which they may be, is not where the copy is.
  handle_ = open(windowsPath(path), path);
  if (!isPrivate) {
    return;
  }
  const std::wstring copy = copyOf(path);
  const HANDLE file = CreateFileW(copy.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    DeleteFileW(copy.c_str());
    refuse(path, error);
  }
  file_ = std::bit_cast<std::intptr_t>(file);
  try {
    handle_ = open(copy, path);
  } catch (...) {
    CloseHandle(file);
    throw;
  }
}

LoadedModule::~LoadedModule() {
  if (file_ != -1) {
    FreeLibrary(static_cast<HMODULE>(handle_));
    CloseHandle(std::bit_cast<HANDLE>(file_));
  }
}

void* LoadedModule::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace dxf2d
