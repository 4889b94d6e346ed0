#include "app/output/output_failures.h"
#include "app/output/windows_file.h"
#include "app/output/work_output.h"
#include "platform/windows_path.h"

// No process holds the file open, so that the plug-in can open it for itself alone.

namespace dxf2d {

void WorkOutput::Write(std::string_view bytes) const {
  if (const int error = appendTo(path, bytes); error != 0) {
    failWriting(name, error);
  }
}

void WorkOutput::Clear() const {
  const WindowsHandle emptied(CreateFileW(windowsPath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                          nullptr, TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                          nullptr));
  if (!emptied.IsOpen()) {
    failWriting(name, errnoOf(GetLastError()));
  }
}

}  // namespace dxf2d
