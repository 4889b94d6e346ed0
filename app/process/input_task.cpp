#include "app/process/input_task.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/process/own_descriptor.h"
#include "app/process/worker_ends.h"
#include "app/process/worker_location.h"

namespace dxf2d {

namespace {

// Address space that a thread takes: a stack, and an arena of the C library's allocator, which
// reserves twice its size to find an aligned one.
constexpr std::uint64_t kThreadSpace = (std::uint64_t{8} + 128) << 20U;

// An imported model takes ten to twenty times the size of its file; the rest is for compressed and
// referenced files. A file that declares more than it contains is stopped there, before it takes
// all the memory of the machine.
std::uint64_t memoryFor(const std::string& path) {
  constexpr std::uint64_t kRoom = std::uint64_t{2} << 30;
  constexpr std::uint64_t kTimesFileSize = 64;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(filePath(path), error);
  return kRoom + (error ? 0 : kTimesFileSize * size);
}

// The limit on time is one on processor time, since a worker may be stopped or wait for a slow
// disk. One that does nothing is ended after so many times that limit.
constexpr int kWallTimes = 10;

// Whether the worker was ended for another reason than its own doing.
bool isEndFromOutside(const WorkerResult& end) {
  using How = WorkerResult::How;
  return end.how == How::kTerminated || end.how == How::kTimedOut ||
         (end.how == How::kSignal && isSentFromOutside(end.number));
}

}  // namespace

Failure startFailure(const std::string& file, const WorkerResult& end) {
  const bool isFound = end.how == WorkerResult::How::kNotStarted;
  if (isFound && !isProgramAbsent(end.number)) {
    return {kExitLimit,
            {file, tr("no worker process can be started (%1)", {strerror(end.number)}),
             tr("close other programs and try again")}};
  }
  const std::string problem = !isFound ? tr("cannot be loaded")
                              : end.number == ENOENT
                                  ? tr("is missing")
                                  : tr("cannot be started (%1)", {strerror(end.number)});
  return {kExitInternal,
          {workerProgram(), problem, tr("install all of dxf2d and the libraries that it needs")}};
}

std::uint64_t memoryLimitOf(const std::string& input, const ResourceLimits& limits) {
  return limits.memory ? *limits.memory : memoryFor(input);
}

InputTask::InputTask(std::string reader, std::string input, const ResourceLimits& limits)
    : reader_(std::move(reader)),
      input_(std::move(input)),
      limits_(limits),
      memory_(memoryLimitOf(input_, limits)),
      isMemoryGranted_(isMemoryGranted(memory_)),
      time_(limits.time),
      timeLeft_(limits.time) {}

int InputTask::Run(WorkerCall call, std::string& text, std::uint64_t* peakMemory) const {
  if (const std::optional<int> own = ownDescriptor(input_)) {
    call.descriptors.push_back(*own);
  }
  const std::uint64_t addressSpace = memory_ + (call.threads - 1) * kThreadSpace;
  WorkerResult end = runWorker(call, {addressSpace, memory_, kWallTimes * timeLeft_, timeLeft_});
  text += end.text;
  if (peakMemory != nullptr) {
    *peakMemory = end.peakMemory;
  }
  return ReportEnd(end);
}

int InputTask::RunProgram(const WorkerCall& call, std::optional<int>& end,
                          std::uint64_t& peakMemory) {
  const WorkerResult result = runWorker(call, {0, memory_, kWallTimes * timeLeft_, timeLeft_});
  const auto taken = std::chrono::floor<std::chrono::seconds>(result.processorTime);
  timeLeft_ = std::max(timeLeft_ - taken, std::chrono::seconds(1));
  peakMemory = std::max(peakMemory, result.peakMemory);
  if (result.how == WorkerResult::How::kExited) {
    end = result.number;
    return kExitDone;
  }
  return ReportEnd(result);
}

void InputTask::UseUnpacked(const std::string& file) {
  memory_ = memoryLimitOf(file, limits_);
  isMemoryGranted_ = isMemoryGranted(memory_);
}

int InputTask::ReportEnd(const WorkerResult& end) const {
  if (end.isMemoryRefused && !isEndFromOutside(end)) {
    return FailForMemory();
  }
  for (const std::string& sentence : end.notes) {
    noteFromWorker(sentence);
  }
  switch (end.how) {
    case WorkerResult::How::kReturned:
      return end.number;
    case WorkerResult::How::kExited:
      if (!plugin_.empty()) {
        return FailForPlugin(
            tr("makes its host exit (exit code %1)", {std::to_string(end.number)}));
      }
      return Fail(kExitInput,
                  tr("makes %1 exit (exit code %2)", {reader_, std::to_string(end.number)}),
                  repairFile());
    case WorkerResult::How::kSignal:
      return FailForSignal(end.number);
    case WorkerResult::How::kTimedOut:
      return FailForTime();
    case WorkerResult::How::kMemoryExceeded:
      return FailForMemory();
    case WorkerResult::How::kNotStarted:
    case WorkerResult::How::kNotLoaded:
      return FailForStart(end);
    case WorkerResult::How::kTerminated:
      break;
  }
  return kExitInternal;
}

int InputTask::FailForStart(const WorkerResult& end) const {
  if (!isMemoryGranted_) {
    return FailForMemory();
  }
  const Failure failure = startFailure(input_, end);
  return fail(failure.Code(), failure.Text());
}

int InputTask::FailForSignal(int signal) const {
  if (isEndOfProcessorTime(signal)) {
    const std::optional<std::chrono::seconds> granted = grantedProcessorTime();
    if (!granted || *granted > time_) {
      return FailForTime();
    }
    return Fail(kExitLimit, tr("takes more processor time than the system allows (ulimit -t)"),
                tr("raise that limit"));
  }
  if (isSentFromOutside(signal)) {
    return Fail(kExitLimit,
                tr("its worker process was ended from outside by a signal (%1), perhaps for lack "
                   "of memory",
                   {crashName(signal)}),
                tr("free some memory and try again"));
  }
  if (!plugin_.empty()) {
    return FailForPlugin(tr("crashes its host (%1)", {crashName(signal)}));
  }
  return Fail(kExitInput, tr("crashes %1 (%2)", {reader_, crashName(signal)}), repairFile());
}

int InputTask::FailForPlugin(const std::string& what) const {
  return fail(kExitPlugin, {plugin_, tr("%1%2", {what, circumstance_}),
                            tr("fix the plug-in or name another with --plugin")});
}

int InputTask::FailForTime() const {
  if (!plugin_.empty()) {
    return FailForPlugin(tr("does not finish within the %1 s that --max-time allows",
                            {std::to_string(time_.count())}));
  }
  return Fail(
      kExitLimit,
      tr("takes longer than the %1 s that --max-time allows", {std::to_string(time_.count())}),
      tr("raise --max-time or use a part of the file"));
}

int InputTask::Reporting(const std::function<int()>& step) const {
  return reporting([&] {
    try {
      return step();
    } catch (const std::bad_alloc&) {
      return FailForMemory();
    }
  });
}

int InputTask::FailForMemory() const {
  if (!isMemoryGranted_) {
    return Fail(kExitLimit, tr("needs more memory than the system allows (ulimit -v, ulimit -d)"),
                tr("raise that limit or use a part of the file"));
  }
  return Fail(kExitLimit,
              tr("needs more than the %1 MiB of memory that --max-memory allows",
                 {std::to_string(memory_ >> 20)}),
              tr("raise --max-memory or use a part of the file"));
}

int InputTask::Fail(int code, const std::string& problem, const std::string& remedy) const {
  return fail(code, {input_, problem, remedy});
}

std::vector<Option> resourceLimitOptions(ResourceLimits& limits) {
  const auto parseMebibytes = [](const std::string& text) -> std::optional<std::uint64_t> {
    const std::optional<std::uint32_t> count = parseCount(text);
    return count ? std::optional(std::uint64_t{*count} << 20) : std::nullopt;
  };
  const auto parseSeconds = [](const std::string& text) -> std::optional<std::chrono::seconds> {
    const std::optional<std::uint32_t> count = parseCount(text);
    return count ? std::optional(std::chrono::seconds(*count)) : std::nullopt;
  };
  return {{"--max-memory", "MIB", "Memory limit per input in MiB (default: 2048 + 64 x file size)",
           kExpectedCount, into(limits.memory, parseMebibytes)},
          {"--max-time", "SECONDS [" + std::to_string(limits.time.count()) + "]",
           "Time limit per input in seconds", kExpectedCount, into(limits.time, parseSeconds)}};
}

}  // namespace dxf2d
