// A task on one input file, run in a worker process within resource limits.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/cli/failure.h"
#include "app/process/worker_process.h"

namespace dxf2d {

// What one input file may use.
struct ResourceLimits {
  // In bytes. None: 2 GiB plus 64 times the size of the file.
  std::optional<std::uint64_t> memory;
  // Of the processor.
  std::chrono::seconds time = std::chrono::minutes(10);
};

// --max-memory and --max-time, which store into `limits`.
std::vector<Option> resourceLimitOptions(ResourceLimits& limits);

// The bytes that a worker may take for the file `input`.
std::uint64_t memoryLimitOf(const std::string& input, const ResourceLimits& limits);

// Why no worker began to work on `file` (kNotStarted, kNotLoaded): the system has no room for one,
// or the installation is not whole.
Failure startFailure(const std::string& file, const WorkerResult& end);

// Has a worker process work on one input file and, when that fails, prints one message about the
// file.
class InputTask {
 public:
  // `reader` is what messages call the code that reads the file, such as "the importer", in the
  // user's language.
  InputTask(std::string reader, std::string input, const ResourceLimits& limits);

  // Runs `call` in a worker process, to which the input is open if it is one of this process's
  // descriptors. Returns an ExitCode, with a message printed unless that is kExitDone, and adds
  // what the task told to `text` and the bytes that it took at most to `peakMemory`; also after a
  // termination signal, which is then pending: the caller cleans up and unblocks it.
  int Run(WorkerCall call, std::string& text, std::uint64_t* peakMemory = nullptr) const;
  // The same for a task that makes a program of another kind of the worker process: a program that
  // exits is done, with its exit code in `end`. Its memory is limited to what is resident, since
  // some runtimes reserve address space by the GiB. Raises `peakMemory` to the bytes that it took
  // at most. What it takes of the time is not left for Run.
  int RunProgram(const WorkerCall& call, std::optional<int>& end, std::uint64_t& peakMemory);
  // The input was unpacked to `file`: the limit of memory that the user did not give goes by that.
  void UseUnpacked(const std::string& file);
  // From now on it is the plug-in `plugin` that makes a worker crash, exit or hang, and not what is
  // read; empty: the latter. `circumstance` ends the sentence about it.
  void Blame(const std::string& plugin, const std::string& circumstance) {
    plugin_ = plugin;
    circumstance_ = circumstance;
  }
  // Runs `step` in this process. What it throws is printed and becomes an exit code (see
  // `reporting`); std::bad_alloc becomes kExitLimit.
  int Reporting(const std::function<int()>& step) const;

 private:
  int ReportEnd(const WorkerResult& end) const;
  int FailForSignal(int signal) const;
  int FailForStart(const WorkerResult& end) const;
  int FailForMemory() const;
  int FailForTime() const;
  int Fail(int code, const std::string& problem, const std::string& remedy) const;
  // `what` says what happens to the host.
  int FailForPlugin(const std::string& what) const;

  std::string reader_;
  std::string input_;
  ResourceLimits limits_;
  std::string plugin_;
  std::string circumstance_;
  std::uint64_t memory_;
  // False when the system's own limits are lower.
  bool isMemoryGranted_;
  std::chrono::seconds time_;
  // Of the processor; what is left of the time, at least a second.
  std::chrono::seconds timeLeft_;
};

}  // namespace dxf2d
