// Starts worker processes.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "app/process/worker_call.h"

namespace dxf2d {

// The command line of a worker that reports to the descriptor `report`.
std::vector<std::string> workerWords(const WorkerCall& call, const WorkerLimits& limits,
                                     int report);

// Starts the worker program, which reports to the descriptor `report`. It has this thread's signal
// mask without the termination signals. Returns 0 and the process in `child`, or an errno.
int startWorker(const WorkerCall& call, const WorkerLimits& limits, int report, pid_t& child);

}  // namespace dxf2d
