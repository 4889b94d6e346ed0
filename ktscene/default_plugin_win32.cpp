#include <filesystem>

#include "ktscene/default_plugin.h"
#include "ktscene/kt_traverser_error.h"
#include "ktscene/utf_text.h"
#include "platform/windows_api.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

// Long enough for any path (32,767 units).
constexpr DWORD kLongestPath = 1 << 15;

std::filesystem::path ownFolder() {
  HMODULE library = nullptr;
  std::wstring path(kLongestPath, L'\0');
  DWORD length = 0;
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(&defaultPlugin), &library) != 0) {
    length = GetModuleFileNameW(library, path.data(), kLongestPath);
  }
  path.resize(length);
  return std::filesystem::path(path).parent_path();
}

std::string utf8Of(const std::filesystem::path& path) {
  return toUtf8(frameworkString(path.wstring()));
}

}  // namespace

std::string defaultPlugin() {
  const std::filesystem::path folder = ownFolder();
  for (const wchar_t* place : {L"dxf2d_plugin.dll", L"dxf2d/dxf2d_plugin.dll"}) {
    std::error_code error;
    if (std::filesystem::is_regular_file(folder / place, error)) {
      return utf8Of(folder / place);
    }
  }
  throw KtTraverserError(utf8Of(folder) +
                         ": there is no plug-in beside the library; install it, or pass the path "
                         "of one");
}

}  // namespace dxf2d
