// Owned handles of Windows. For the files for Windows.
#pragma once

#include <utility>

#include "platform/windows_api.h"

namespace dxf2d {

inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class WindowsHandle {
 public:
  WindowsHandle() = default;
  // Neither kind of what the functions return for none is open.
  explicit WindowsHandle(HANDLE handle)
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  WindowsHandle(WindowsHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  WindowsHandle& operator=(WindowsHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~WindowsHandle() { Close(); }

  bool IsOpen() const { return handle_ != nullptr; }
  HANDLE Get() const { return handle_; }
  void Close() {
    if (IsOpen()) {
      CloseHandle(std::exchange(handle_, nullptr));
    }
  }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace dxf2d
