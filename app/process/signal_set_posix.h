// The termination signals as a set.
#pragma once

#include <csignal>

namespace dxf2d {

// Returns the signals by which a user or the system ends a process: Ctrl-C, a closed terminal, a
// shutdown, timers, schedulers, real-time signals. Leaves out those that the process was started to
// ignore, as under nohup, and those that report a fault of its own, such as SIGSEGV.
sigset_t terminationSignals();

}  // namespace dxf2d
