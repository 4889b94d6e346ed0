// Termination signals, blocked while there is something to clean up: those by which a user or the
// system ends a process. On Windows they are what a console's handler is told: Ctrl-C, Ctrl-Break,
// a closed window, the end of the session.
#pragma once

#include <memory>

namespace dxf2d {

// Unblocks the termination signals: some launchers start programs with them blocked by mistake. For
// the start of the program.
void unblockTerminationSignals();

// Has failed writes return their reason (EPIPE, EFBIG) in place of ending the process by a signal.
// For the start of the program.
void ignoreWriteSignals();

// Whether one that is blocked has come.
bool isTerminationPending();

// Blocks the termination signals for its lifetime. A signal that arrives meanwhile ends the process
// when the outermost block is destroyed. The code in between should be short, or wait in runWorker,
// which returns when a signal arrives. For the main thread, and for others where all threads block
// the signals; blocks must be destroyed in the reverse order of construction.
class ScopedSignalBlock {
 public:
  ScopedSignalBlock();
  ~ScopedSignalBlock();
  ScopedSignalBlock(const ScopedSignalBlock&) = delete;
  ScopedSignalBlock& operator=(const ScopedSignalBlock&) = delete;

 private:
  struct Mask;
  std::unique_ptr<Mask> before_;
};

}  // namespace dxf2d
