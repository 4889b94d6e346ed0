#include "platform/path_text.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

// A directory's name is refused a little earlier than a file's: it must leave room for a file in
// it.
constexpr std::size_t kShort = MAX_PATH - 12;

// The complete path; empty where Windows cannot tell.
std::wstring completePath(const std::wstring& path) {
  std::wstring complete(kShort, L'\0');
  for (;;) {
    const DWORD size = GetFullPathNameW(path.c_str(), static_cast<DWORD>(complete.size()),
                                        complete.data(), nullptr);
    if (size <= complete.size()) {
      complete.resize(size);
      return complete;
    }
    complete.resize(size);
  }
}

}  // namespace

std::wstring windowsPath(std::u16string_view path) {
  std::wstring given = windowsString(path);
  // Names of devices, and what is marked already, are taken as they are.
  if (given.empty() || given.starts_with(L"\\\\?\\") || given.starts_with(L"\\\\.\\")) {
    return given;
  }
  std::wstring complete = completePath(given);
  if (complete.size() < kShort || complete.starts_with(L"\\\\.\\")) {
    return given;
  }
  if (complete.starts_with(L"\\\\")) {
    return L"\\\\?\\UNC" + complete.substr(1);
  }
  return L"\\\\?\\" + complete;
}

std::wstring windowsPath(std::string_view path) { return windowsPath(pathFromBytes(path)); }

}  // namespace dxf2d
