// Runs work in a worker process, since third-party code may crash it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/process/worker_call.h"

namespace dxf2d {

struct WorkerResult {
  enum class How {
    kReturned,        // the task returned the exit code `number`
    kExited,          // the worker exited before the task returned, with the exit code `number`
    kSignal,          // the worker was killed by the signal `number`
    kTimedOut,        // the worker exceeded its time limit and was killed
    kMemoryExceeded,  // the worker exceeded its limit on resident memory and was killed
    kTerminated,      // this process received a termination signal, and the worker was killed
    kNotStarted,      // no process could be started; `number` is errno
    kNotLoaded,       // the worker program ended before its task began
  };
  How how = How::kReturned;
  int number = 0;
  bool isMemoryRefused = false;
  // What the task told: sentences for the user, and its result.
  std::vector<std::string> notes{};
  std::string text{};
  // Bytes of memory that it had at most.
  std::uint64_t peakMemory = 0;
  // That it took.
  std::chrono::milliseconds processorTime{0};

  bool Returned(int code) const { return how == How::kReturned && number == code; }
};

// Whether the system's own limits (RLIMIT_AS, RLIMIT_DATA) allow a process that many bytes.
bool isMemoryGranted(std::uint64_t bytes);

// The processor time that the system allows a process (RLIMIT_CPU), if it limits that.
std::optional<std::chrono::seconds> grantedProcessorTime();

// Runs `call` in a worker process, so that this process can report a crash and clean up. See
// runWorkerProgram for the other side. Standard output is flushed before. Several threads may run
// workers if the termination signals are blocked in all threads.
//
// After kTerminated the signal is pending: it ends this process as soon as no ScopedSignalBlock
// blocks it, which without any is before this returns.
WorkerResult runWorker(const WorkerCall& call, const WorkerLimits& limits = {});

}  // namespace dxf2d
