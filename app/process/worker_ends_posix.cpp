#include "app/process/worker_ends.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "app/process/signal_set_posix.h"

namespace dxf2d {

std::string crashName(int number) { return strsignal(number); }

bool isSentFromOutside(int number) {
  const sigset_t requests = terminationSignals();
  return number == SIGKILL || sigismember(&requests, number) == 1;
}

bool isEndOfProcessorTime(int number) { return number == SIGXCPU; }

bool isProgramAbsent(int error) {
  constexpr std::array kNoProgram{ENOENT, ENOTDIR, EACCES, ENOEXEC, ELIBBAD};
  return std::ranges::find(kNoProgram, error) != kNoProgram.end();
}

}  // namespace dxf2d
