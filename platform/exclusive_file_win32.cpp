#include <algorithm>
#include <bit>
#include <utility>

#include "platform/exclusive_file.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

const std::intptr_t kNone = std::bit_cast<std::intptr_t>(INVALID_HANDLE_VALUE);

HANDLE toHandle(std::intptr_t handle) { return std::bit_cast<HANDLE>(handle); }

}  // namespace

ExclusiveFile::ExclusiveFile() : handle_(kNone) {}

ExclusiveFile::~ExclusiveFile() { Close(); }

long ExclusiveFile::Open(const char16_t* path, bool write, bool create) {
  const std::wstring name = windowsPath(path);
  constexpr DWORD kShareNothing = 0;
  const HANDLE handle =
      CreateFileW(name.c_str(), write ? GENERIC_WRITE : GENERIC_READ, kShareNothing, nullptr,
                  create ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  handle_ = std::bit_cast<std::intptr_t>(handle);
  return handle == INVALID_HANDLE_VALUE ? static_cast<long>(GetLastError()) : 0;
}

long ExclusiveFile::Write(const char* data, std::size_t count) {
  // WriteFile takes 32 bits, and network drives refuse the largest of them.
  constexpr std::size_t kMost = std::size_t{64} << 20U;
  while (count > 0) {
    DWORD written = 0;
    if (WriteFile(toHandle(handle_), data, static_cast<DWORD>(std::min(count, kMost)), &written,
                  nullptr) == 0) {
      return static_cast<long>(GetLastError());
    }
    if (written == 0) {
      return ERROR_WRITE_FAULT;
    }
    data += written;
    count -= written;
  }
  return 0;
}

long ExclusiveFile::Close() {
  if (handle_ == kNone) {
    return 0;
  }
  const BOOL closed = CloseHandle(toHandle(std::exchange(handle_, kNone)));
  return closed != 0 ? 0 : static_cast<long>(GetLastError());
}

}  // namespace dxf2d
