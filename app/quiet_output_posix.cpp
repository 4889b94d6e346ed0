#include "app/quiet_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace {

Descriptor turnedAway(int descriptor, const Descriptor& nowhere) {
  Descriptor before(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (before.IsOpen()) dup2(nowhere.Number(), descriptor);
  return before;
}

void turnBack(int descriptor, const Descriptor& before) {
  if (before.IsOpen()) dup2(before.Number(), descriptor);
}

}  // namespace

QuietOutput::QuietOutput() {
  std::fflush(stdout);
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (!nowhere.IsOpen()) return;
  output_ = turnedAway(STDOUT_FILENO, nowhere);
  error_ = turnedAway(STDERR_FILENO, nowhere);
}

QuietOutput::~QuietOutput() {
  std::fflush(stdout);
  turnBack(STDOUT_FILENO, output_);
  turnBack(STDERR_FILENO, error_);
}
