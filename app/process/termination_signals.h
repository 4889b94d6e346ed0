// Termination signals, blocked while there is something to clean up.
#pragma once

#include <csignal>

namespace dxf2d {

// Returns the signals by which a user or the system ends a process: Ctrl-C, a closed terminal, a
// shutdown, timers, schedulers, real-time signals. Leaves out those that the process was started to
// ignore, as under nohup, and those that report a fault of its own, such as SIGSEGV.
sigset_t terminationSignals();

// Unblocks the termination signals: some launchers start programs with them blocked by mistake. For
// the start of the program.
void unblockTerminationSignals();

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
  sigset_t before_;
};

}  // namespace dxf2d
