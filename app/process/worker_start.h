// Starts worker processes.
#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>

#include "app/process/worker_call.h"

namespace dxf2d {

// The file of the worker program that belongs to this program.
std::string workerProgram();

// Starts the worker program, which reports to the descriptor `report`. It has the signal mask
// `mask` without the termination signals. Returns 0 and the process in `child`, or an errno.
int startWorker(const WorkerCall& call, const WorkerLimits& limits, int report,
                const sigset_t& mask, pid_t& child);

}  // namespace dxf2d
