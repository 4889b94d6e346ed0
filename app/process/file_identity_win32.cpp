#include "app/process/file_identity.h"

#include "app/process/windows_handle.h"
#include "platform/windows_path.h"

namespace dxf2d {

std::optional<FileIdentity> identityOf(const std::string& path) {
  // Of directories, too.
  const WindowsHandle file(CreateFileW(windowsPath(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                       nullptr));
  BY_HANDLE_FILE_INFORMATION status;
  if (!file.IsOpen() || GetFileInformationByHandle(file.Get(), &status) == 0) {
    return std::nullopt;
  }
  return FileIdentity{status.dwVolumeSerialNumber,
                      std::uint64_t{status.nFileIndexHigh} << 32U | status.nFileIndexLow};
}

}  // namespace dxf2d
