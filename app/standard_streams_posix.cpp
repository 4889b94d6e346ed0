#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

#include "app/standard_streams.h"

void reserveStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number, which is this one. Writing to what is open for reading fails.
    static_cast<void>(open("/dev/null", O_RDONLY));
  }
}
