#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

#include "app/process/standard_streams.h"

namespace dxf2d {

void reserveStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0) {
      continue;
    }
    // open returns the lowest free number, which is this one. Read-only, so that writes fail.
    static_cast<void>(open("/dev/null", O_RDONLY));
  }
}

}  // namespace dxf2d
