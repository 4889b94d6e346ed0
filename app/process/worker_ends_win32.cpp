#include "app/process/worker_ends.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

#include "app/cli/translation.h"
#include "platform/windows_api.h"

namespace dxf2d {

// The numbers are codes of exceptions.
std::string crashName(int number) {
  switch (static_cast<DWORD>(number)) {
    case EXCEPTION_ACCESS_VIOLATION:
      return tr("access violation");
    case EXCEPTION_STACK_OVERFLOW:
      return tr("stack overflow");
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return tr("integer division by zero");
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return tr("illegal instruction");
    case EXCEPTION_IN_PAGE_ERROR:
      return tr("a part of a file cannot be read");
    case STATUS_STACK_BUFFER_OVERRUN:
      return tr("aborted");
    default:
      break;
  }
  char text[32];
  std::snprintf(text, sizeof text, "exception 0x%08X", static_cast<unsigned>(number));
  return text;
}

// Who ends a process of another chooses its exit code, which no worker tells from its own.
bool isSentFromOutside(int /*number*/) { return false; }

// The parent ends a worker that has used up its time.
bool isEndOfProcessorTime(int /*number*/) { return false; }

bool isProgramAbsent(int error) {
  constexpr std::array kNoProgram{ENOENT, ENOTDIR, EACCES, ENOEXEC};
  return std::ranges::find(kNoProgram, error) != kNoProgram.end();
}

}  // namespace dxf2d
