#include "app/cli/own_program.h"

#include <string>

#include "platform/windows_api.h"

namespace dxf2d {

std::filesystem::path ownProgram() {
  // As long as any path is.
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace dxf2d
