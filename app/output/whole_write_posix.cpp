#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "app/output/output_failures.h"
#include "app/output/whole_write.h"

namespace dxf2d {

void writeWhole(int file, std::string_view bytes, const std::string& name) {
  while (!bytes.empty()) {
    const ssize_t count = retryInterrupted([&] { return write(file, bytes.data(), bytes.size()); });
    if (count < 0 && errno == EAGAIN) {
      // Another process may have made the pipe non-blocking.
      pollfd room{file, POLLOUT, 0};
      poll(&room, 1, -1);
      continue;
    }
    // A device that accepts nothing would be retried forever.
    if (count <= 0) {
      failWriting(name, count == 0 ? EIO : errno);
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void removeBytes(int file, const std::string& name) {
  if (retryInterrupted([&] { return ftruncate(file, 0); }) != 0) {
    failWriting(name, errno);
  }
}

}  // namespace dxf2d
