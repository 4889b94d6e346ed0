#include "app/process/termination_signals.h"

#include <atomic>
#include <cstdlib>

#include "app/process/termination_event_win32.h"

namespace dxf2d {

namespace {

// What the system's own handler ends a process with.
constexpr UINT kInterrupted = 0xC000013A;

std::atomic<int> blocks = 0;
std::atomic<bool> isPending = false;

// Runs in a thread of its own. After it returns from a closed window the system ends the process,
// so it does not return while there is something to clean up.
BOOL WINAPI onConsoleEvent(DWORD /*event*/) {
  isPending = true;
  SetEvent(terminationEvent());
  if (blocks == 0) {
    TerminateProcess(GetCurrentProcess(), kInterrupted);
  }
  Sleep(INFINITE);
  return TRUE;
}

}  // namespace

HANDLE terminationEvent() {
  static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return event;
}

// Programs are started with Ctrl-C ignored by some launchers by mistake.
void unblockTerminationSignals() {
  SetConsoleCtrlHandler(nullptr, FALSE);
  static_cast<void>(terminationEvent());
  SetConsoleCtrlHandler(&onConsoleEvent, TRUE);
}

// There are none.
void ignoreWriteSignals() {}

bool isTerminationPending() { return isPending; }

struct ScopedSignalBlock::Mask {};

ScopedSignalBlock::ScopedSignalBlock() { ++blocks; }

ScopedSignalBlock::~ScopedSignalBlock() {
  if (--blocks == 0 && isPending) {
    TerminateProcess(GetCurrentProcess(), kInterrupted);
  }
}

}  // namespace dxf2d
