#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>

#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "tests/support/open_file.h"

namespace {

std::optional<std::string> readClosedFile(const std::string& path) {
  std::ifstream file(dxf2d::windowsPath(path).c_str(), std::ios::binary);
  if (!file) {
    return std::nullopt;
  }
  return std::string{std::istreambuf_iterator<char>(file), {}};
}

std::wstring nameOf(HANDLE handle) {
  wchar_t name[MAX_PATH] = L"";
  if (GetFileType(handle) == FILE_TYPE_DISK) {
    GetFinalPathNameByHandleW(handle, name, MAX_PATH, FILE_NAME_OPENED);
  }
  return name;
}

// This process's handle of the file; null if it has none.
HANDLE findHandle(const std::wstring& path) {
  wchar_t complete[MAX_PATH];
  GetFullPathNameW(path.c_str(), MAX_PATH, complete, nullptr);
  const std::wstring wanted = std::wstring(L"\\\\?\\") + complete;
  constexpr std::uintptr_t kMostHandles = 4096;
  for (std::uintptr_t number = 4; number < kMostHandles; number += 4) {
    const auto handle = reinterpret_cast<HANDLE>(number);
    if (_wcsicmp(nameOf(handle).c_str(), wanted.c_str()) == 0) {
      return handle;
    }
  }
  return nullptr;
}

}  // namespace

// A file that is open for one object alone cannot be opened again, not even by this process, so the
// handle is taken away for a moment. Windows gives the number that was freed last to the next one.
std::optional<std::string> readOpenFile(const std::string& path) {
  if (const std::optional<std::string> bytes = readClosedFile(path)) {
    return bytes;
  }
  const std::wstring name = dxf2d::windowsPath(path);
  const HANDLE handle = findHandle(name);
  if (handle == nullptr) {
    return std::nullopt;
  }
  CloseHandle(handle);
  const std::optional<std::string> bytes = readClosedFile(path);
  const HANDLE again =
      CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(again, handle) << "the file has another handle now";
  SetFilePointer(again, 0, nullptr, FILE_END);
  return bytes;
}
