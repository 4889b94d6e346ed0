#include <cerrno>

#include "platform/input_file.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

bool isDirectory(const wchar_t* path) {
  const DWORD attributes = GetFileAttributesW(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

std::FILE* openForReading(const std::string& path) {
  const std::wstring name = windowsPath(path);
  std::FILE* file = _wfopen(name.c_str(), L"rb");
  if (file == nullptr && errno == EACCES && isDirectory(name.c_str())) {
    errno = EISDIR;
  }
  return file;
}

}  // namespace dxf2d
