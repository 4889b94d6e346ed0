#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "app/process/termination_event_win32.h"
#include "app/process/termination_signals.h"
#include "app/process/worker_process.h"
#include "app/process/worker_reports.h"
#include "app/process/worker_start_win32.h"
// It needs what is above.
#include <psapi.h>

namespace dxf2d {

namespace {

using Clock = std::chrono::steady_clock;
using How = WorkerResult::How;

// How often a worker's report is looked at, and what it has taken.
constexpr std::chrono::milliseconds kInterval{10};

// More than this between two looks was spent asleep: the system was.
constexpr std::chrono::milliseconds kLongestLook{1000};

// What is reported between two looks, so that the worker need not wait.
constexpr DWORD kPipeSize = 1U << 20U;

// How a worker ends that used up its processor time, by itself or by its job.
constexpr DWORD kTimeUsedUp = ERROR_NOT_ENOUGH_QUOTA;

// Exit codes from here on are codes of exceptions.
constexpr DWORD kLeastException = 0x80000000;

std::chrono::milliseconds millisecondsOf(const FILETIME& time) {
  constexpr std::uint64_t kTicks = 10'000;
  return std::chrono::milliseconds(
      (std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime) / kTicks);
}

std::chrono::milliseconds processorTimeOf(HANDLE process) {
  FILETIME begin{};
  FILETIME end{};
  FILETIME system{};
  FILETIME user{};
  GetProcessTimes(process, &begin, &end, &system, &user);
  return millisecondsOf(system) + millisecondsOf(user);
}

PROCESS_MEMORY_COUNTERS memoryOf(HANDLE process) {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(process, &counters, sizeof counters);
  return counters;
}

// Waits for the end of a worker and takes what it reports meanwhile.
class Watch {
 public:
  Watch(StartedWorker worker, WindowsHandle report, const WorkerCall& call,
        const WorkerLimits& limits)
      : worker_(std::move(worker)),
        report_(std::move(report)),
        limits_(limits),
        reports_(call.onStage) {}

  WorkerResult Run() {
    const HANDLE events[] = {worker_.process.Get(), terminationEvent()};
    while (true) {
      const DWORD event =
          WaitForMultipleObjects(2, events, FALSE, static_cast<DWORD>(kInterval.count()));
      AddTime();
      ReadReports();
      const std::uint64_t memory = TakenMemory();
      if (isTerminationPending()) {
        return Kill(How::kTerminated);
      }
      if (event == WAIT_OBJECT_0) {
        return End();
      }
      if (limits_.time.count() != 0 && spent_ >= limits_.time) {
        return Kill(How::kTimedOut);
      }
      // The system may keep a job's limit on memory late or, as Wine, not at all.
      if (limits_.residentMemory != 0 && memory > limits_.residentMemory) {
        return Kill(How::kMemoryExceeded);
      }
    }
  }

 private:
  void AddTime() {
    const Clock::time_point now = Clock::now();
    spent_ += std::min<Clock::duration>(now - lastLook_, kLongestLook);
    lastLook_ = now;
  }

  // Wine forgets the peak of a process that has ended.
  std::uint64_t TakenMemory() {
    const PROCESS_MEMORY_COUNTERS memory = memoryOf(worker_.process.Get());
    peakMemory_ = std::max<std::uint64_t>(peakMemory_, memory.PeakWorkingSetSize);
    return memory.WorkingSetSize;
  }

  // As much as is there, but not without end from a worker that never stops.
  void ReadReports() {
    constexpr int kMostReads = 64;
    char bytes[1 << 16];
    DWORD waiting = 0;
    for (int reads = 0; report_.IsOpen() && reads < kMostReads; ++reads) {
      DWORD count = 0;
      if (PeekNamedPipe(report_.Get(), nullptr, 0, nullptr, &waiting, nullptr) == 0 ||
          waiting == 0 ||
          ReadFile(report_.Get(), bytes, std::min<DWORD>(waiting, sizeof bytes), &count, nullptr) ==
              0) {
        return;
      }
      reports_.Append({bytes, count});
      if (reports_.IsBroken()) {
        report_.Close();
      }
    }
  }

  WorkerResult End() {
    ReadReports();
    DWORD code = 0;
    GetExitCodeProcess(worker_.process.Get(), &code);
    const auto number = static_cast<int>(code);
    if (reports_.HasReturned()) {
      return ResultOf(How::kReturned, number);
    }
    if (!reports_.HasStarted()) {
      return ResultOf(How::kNotLoaded, number);
    }
    if (code == kTimeUsedUp) {
      return ResultOf(How::kTimedOut, number);
    }
    return ResultOf(code >= kLeastException ? How::kSignal : How::kExited, number);
  }

  WorkerResult Kill(How how) {
    TerminateProcess(worker_.process.Get(), 0);
    WaitForSingleObject(worker_.process.Get(), INFINITE);
    ReadReports();
    return ResultOf(how, 0);
  }

  WorkerResult ResultOf(How how, int number) {
    const HANDLE process = worker_.process.Get();
    return {how,
            number,
            reports_.IsMemoryRefused(),
            std::move(reports_.Notes()),
            std::move(reports_.Text()),
            peakMemory_,
            processorTimeOf(process)};
  }

  StartedWorker worker_;
  // Closed when what comes is not understood.
  WindowsHandle report_;
  WorkerLimits limits_;
  Clock::time_point lastLook_ = Clock::now();
  Clock::duration spent_{};
  std::uint64_t peakMemory_ = 0;
  WorkerReports reports_;
};

}  // namespace

// A job has what its worker is given.
bool isMemoryGranted(std::uint64_t /*bytes*/) { return true; }

std::optional<std::chrono::seconds> grantedProcessorTime() { return std::nullopt; }

WorkerResult runWorker(const WorkerCall& call, const WorkerLimits& limits) {
  std::fflush(stdout);
  const ScopedSignalBlock deferred;
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE ends[2]{};
  if (CreatePipe(&ends[0], &ends[1], &inherited, kPipeSize) == 0) {
    return {How::kNotStarted, ENOMEM};
  }
  WindowsHandle reader(ends[0]);
  WindowsHandle writer(ends[1]);
  StartedWorker worker;
  const int error = startWorker(call, limits, writer.Get(), worker);
  if (error != 0) {
    return {How::kNotStarted, error};
  }
  writer.Close();
  return Watch(std::move(worker), std::move(reader), call, limits).Run();
}

}  // namespace dxf2d
