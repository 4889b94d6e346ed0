#include "bench/measure/fresh_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

namespace {

// Ends the process without a look at what it shares with its parent.
[[noreturn]] void measureAndEnd(const std::function<double()>& measure, int pipeEnd) {
  try {
    const double result = measure();
    const bool isWritten = write(pipeEnd, &result, sizeof result) == sizeof result;
    _exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    _exit(EXIT_FAILURE);
  }
}

}  // namespace

double inFreshProcess(const std::function<double()>& measure) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) {
    throw std::runtime_error("cannot make a pipe");
  }
  const pid_t child = fork();
  if (child == 0) {
    measureAndEnd(measure, ends[1]);
  }
  close(ends[1]);
  double result = 0.0;
  const bool isRead = child > 0 && read(ends[0], &result, sizeof result) == sizeof result;
  close(ends[0]);
  if (child > 0) {
    waitpid(child, nullptr, 0);
  }
  if (!isRead) {
    throw std::runtime_error("a measuring process failed");
  }
  return result;
}
