// Runs many jobs, several at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace dxf2d::batch {

struct JobLimits {
  // Jobs at a time, at least 1.
  unsigned jobs = 1;
  // Bytes that jobs may take together; 0 for no limit.
  std::uint64_t memory = 0;
};

// Calls `run` with the number of each job, in order, from `limits.jobs` threads. A job begins when
// the bytes that it may take, `memoryOf` its number, fit beside those of the jobs that run; with no
// other job it always begins. When `run` returns false no more are begun. Returns when all that
// were begun have ended. `run` must not throw.
//
// The threads have the signal mask of the caller.
void runJobs(const std::vector<std::uint64_t>& memoryOf, const JobLimits& limits,
             const std::function<bool(std::size_t)>& run);

// As many jobs at a time as this process may use processors.
unsigned defaultJobCount();

// The bytes of memory that this system, or the control group of this process, still has for
// programs; 0 when it does not say.
std::uint64_t availableMemory();

}  // namespace dxf2d::batch
