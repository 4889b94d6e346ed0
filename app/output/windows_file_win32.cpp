#include <algorithm>
#include <cerrno>

#include "app/output/windows_file.h"
#include "platform/windows_path.h"

namespace dxf2d {

int errnoOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_DRIVE:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_DIRECTORY:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
      return ENOTDIR;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return EPIPE;
    default:
      return EIO;
  }
}

int appendTo(const std::string& path, std::string_view bytes) {
  const WindowsHandle file(CreateFileW(windowsPath(path).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) {
    return errnoOf(GetLastError());
  }
  constexpr std::size_t kMost = std::size_t{64} << 20U;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), kMost));
    if (WriteFile(file.Get(), bytes.data(), count, &written, nullptr) == 0) {
      return errnoOf(GetLastError());
    }
    bytes.remove_prefix(written);
  }
  return 0;
}

bool isDevice(const std::string& path) {
  wchar_t complete[MAX_PATH];
  const DWORD length = GetFullPathNameW(windowsPath(path).c_str(), MAX_PATH, complete, nullptr);
  return length < MAX_PATH && std::wstring_view(complete, length).starts_with(LR"(\\.\)");
}

}  // namespace dxf2d
