// Starts worker processes on Windows.
#pragma once

#include "app/process/windows_handle.h"
#include "app/process/worker_call.h"

namespace dxf2d {

// A worker that has been started, and what holds it to its limits.
struct StartedWorker {
  // Ends the worker when it is closed, which the system does when this process ends.
  WindowsHandle job;
  WindowsHandle process;
};

// Starts the worker program, which reports to the pipe `report`. Returns 0 and the worker in
// `worker`, or an errno.
int startWorker(const WorkerCall& call, const WorkerLimits& limits, HANDLE report,
                StartedWorker& worker);

}  // namespace dxf2d
