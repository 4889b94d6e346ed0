#include "app/batch/report_storage.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdint>

#include "app/cli/translation.h"
#include "app/output/output_failures.h"
#include "app/output/windows_file.h"
#include "platform/windows_path.h"

namespace dxf2d::batch {

namespace {

Descriptor opened(const std::string& path, DWORD access, DWORD share, DWORD disposition) {
  const HANDLE file = CreateFileW(windowsPath(path).c_str(), access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    errno = errnoOf(GetLastError());
    return {};
  }
  return Descriptor(_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_BINARY));
}

}  // namespace

// Others may read it meanwhile.
Descriptor openReport(const std::string& path) {
  Descriptor file = opened(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
  if (!file.IsOpen() && GetLastError() == ERROR_SHARING_VIOLATION) {
    failCreating(path, tr("another run is writing it"),
                 tr("wait for that run or choose another name"));
  }
  if (!file.IsOpen()) {
    failCreatingBeside(path, path, errno);
  }
  if (isDevice(path)) {
    failCreating(path, tr("it is not a regular file"), tr("choose another name"));
  }
  return file;
}

Descriptor openReportToRead(const std::string& path) {
  return opened(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
}

std::string reportText(int file, const std::string& path) {
  _lseeki64(file, 0, SEEK_SET);
  std::string text;
  char bytes[1 << 16];
  while (const int count = _read(file, bytes, sizeof bytes)) {
    if (count < 0) {
      throw OutputError(kExitInput,
                        {path, tr("cannot be read: %1", {reasonOf(errno)}), checkDisk()});
    }
    text.append(bytes, static_cast<std::size_t>(count));
  }
  return text;
}

void cutReport(int file, std::size_t size, const std::string& path) {
  if (const int error = _chsize_s(file, static_cast<std::int64_t>(size)); error != 0) {
    failWriting(path, error);
  }
  // Where what is written goes.
  _lseeki64(file, 0, SEEK_END);
}

}  // namespace dxf2d::batch
