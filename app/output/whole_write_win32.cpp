#include "app/output/whole_write.h"

#include <io.h>

#include <algorithm>
#include <cerrno>

#include "app/output/output_failures.h"

namespace dxf2d {

void writeWhole(int file, std::string_view bytes, const std::string& name) {
  constexpr std::size_t kMost = std::size_t{16} << 20U;
  while (!bytes.empty()) {
    const int count =
        _write(file, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMost)));
    // A device that accepts nothing would be retried forever.
    if (count <= 0) {
      failWriting(name, count == 0 ? EIO : errno);
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void removeBytes(int file, const std::string& name) {
  if (const int error = _chsize_s(file, 0); error != 0) {
    failWriting(name, error);
  }
}

}  // namespace dxf2d
