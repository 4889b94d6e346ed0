#include <string>

#include "ktscene/library_folder.h"
#include "ktscene/utf_text.h"
#include "platform/windows_api.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

// Long enough for any path (32,767 units).
constexpr DWORD kLongestPath = 1 << 15;

}  // namespace

std::string libraryFolder() {
  HMODULE library = nullptr;
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(&libraryFolder), &library) == 0) {
    return {};
  }
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(library, path.data(), kLongestPath));
  const std::string file = toUtf8(frameworkString(path));
  return file.substr(0, file.find_last_of('\\'));
}

}  // namespace dxf2d
