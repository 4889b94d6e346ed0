#include <fcntl.h>
#include <io.h>

#include "app/process/input_mapping.h"
#include "app/process/windows_handle.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

HANDLE handleOf(const Descriptor& file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(file.Number()));
}

// The time of the last change, in the units of Windows.
timespec changeOf(HANDLE file) {
  FILETIME time{};
  GetFileTime(file, nullptr, nullptr, &time);
  return {static_cast<std::time_t>(time.dwHighDateTime), static_cast<long>(time.dwLowDateTime)};
}

}  // namespace

// Nobody shortens a mapped file there. A disk that fails ends the process with a fault of its own.
InputMapping::InputMapping(const std::string& path) {
  const HANDLE file = CreateFileW(windowsPath(path).c_str(), GENERIC_READ, kShareAll, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  LARGE_INTEGER size{};
  if (file == INVALID_HANDLE_VALUE || GetFileType(file) != FILE_TYPE_DISK) {
    CloseHandle(file);
    return;
  }
  // Closes the handle, too.
  file_ = Descriptor(_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDONLY));
  if (GetFileSizeEx(file, &size) == 0 || size.QuadPart == 0) {
    return;
  }
  const WindowsHandle mapping(CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr));
  const void* const bytes =
      mapping.IsOpen() ? MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 0) : nullptr;
  if (bytes != nullptr) {
    bytes_ = {static_cast<const char*>(bytes), static_cast<std::size_t>(size.QuadPart)};
    modified_ = changeOf(file);
  }
}

InputMapping::~InputMapping() {
  if (!bytes_.empty()) {
    UnmapViewOfFile(bytes_.data());
  }
}

bool InputMapping::IsWhole() const {
  LARGE_INTEGER size{};
  const timespec now = changeOf(handleOf(file_));
  return GetFileSizeEx(handleOf(file_), &size) != 0 &&
         static_cast<std::size_t>(size.QuadPart) == bytes_.size() &&
         now.tv_sec == modified_.tv_sec && now.tv_nsec == modified_.tv_nsec;
}

}  // namespace dxf2d
