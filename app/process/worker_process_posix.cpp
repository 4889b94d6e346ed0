#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include "app/process/memory_in_use.h"
#include "app/process/pipe.h"
#include "app/process/signal_set_posix.h"
#include "app/process/termination_signals.h"
#include "app/process/worker_process.h"
#include "app/process/worker_reports.h"
#include "app/process/worker_start.h"
#include "app/process/worker_template.h"

namespace dxf2d {

namespace {

using Clock = std::chrono::steady_clock;
using How = WorkerResult::How;

// How often the memory of a worker is looked at, and its time.
constexpr std::chrono::milliseconds kInterval{10};

// More than this between two looks was spent asleep: this process was stopped, as by Ctrl-Z, or the
// system was.
constexpr std::chrono::milliseconds kLongestLook{1000};

// Children that end are otherwise not there to be asked how, if the program was started to ignore
// this signal.
void heedChildren() {
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &action, nullptr);
}

// A descriptor that is readable while a termination signal, all of them blocked, is pending. The
// signals stay pending, for whoever else waits for them.
Descriptor openSignals() {
  const sigset_t signals = terminationSignals();
  return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

// A descriptor that is readable when the child has ended. Not open on systems before Linux 5.3. The
// C library's declaration of this call cannot be used from C++.
Descriptor openEnd(pid_t child) {
  return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
}

std::chrono::milliseconds timeOf(const timeval& time) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec));
}

bool isReadable(const pollfd& event) { return (event.revents & POLLIN) != 0; }

// Waits for the end of a worker and takes what it reports meanwhile.
class Watch {
 public:
  Watch(pid_t child, const Descriptor& signals, Descriptor report, const WorkerCall& call,
        const WorkerLimits& limits)
      : child_(child),
        end_(openEnd(child)),
        signals_(signals),
        report_(std::move(report)),
        limits_(limits),
        reports_(call.onStage) {
    fcntl(report_.Number(), F_SETFL, O_NONBLOCK);
  }

  WorkerResult Run() {
    while (true) {
      pollfd events[] = {{signals_.Number(), POLLIN, 0},
                         {report_.Number(), POLLIN, 0},
                         {end_.Number(), POLLIN, 0}};
      poll(events, 3, TimeToWait());
      AddTime();
      ReadReports();
      if (isReadable(events[0])) {
        return Kill(How::kTerminated);
      }
      if (const auto result = Look()) {
        return *result;
      }
      if (limits_.time.count() != 0 && spent_ >= limits_.time) {
        return Kill(How::kTimedOut);
      }
      if (limits_.residentMemory != 0 && residentMemoryOf(child_) > limits_.residentMemory) {
        return Kill(How::kMemoryExceeded);
      }
    }
  }

 private:
  // In milliseconds, as poll takes it; -1 for ever.
  int TimeToWait() const {
    if (!end_.IsOpen()) {
      // Systems without such descriptors: a worker that ends closes its report.
      return report_.IsOpen() ? static_cast<int>(kInterval.count()) : 1;
    }
    const bool hasLimits = limits_.residentMemory != 0 || limits_.time.count() != 0;
    return hasLimits ? static_cast<int>(kInterval.count()) : -1;
  }

  // The time in which the worker or this process is stopped does not count.
  void AddTime() {
    const Clock::time_point now = Clock::now();
    if (!isStopped_) {
      spent_ += std::min<Clock::duration>(now - lastLook_, kLongestLook);
    }
    lastLook_ = now;
  }

  // More than the pipe holds, but not without end from a worker that never stops.
  void ReadReports() {
    constexpr int kMostReads = 64;
    char bytes[4096];
    for (int reads = 0; report_.IsOpen() && reads < kMostReads; ++reads) {
      const ssize_t count = read(report_.Number(), bytes, sizeof bytes);
      if (count > 0) {
        reports_.Append({bytes, static_cast<std::size_t>(count)});
        if (reports_.IsBroken()) {
          report_.Close();
        }
      } else if (count == 0) {
        report_.Close();
      } else if (errno != EINTR) {
        return;
      }
    }
  }

  // Whether the worker has ended, and how.
  std::optional<WorkerResult> Look() {
    int status = 0;
    struct rusage usage {};
    if (wait4(child_, &status, WNOHANG | WUNTRACED | WCONTINUED, &usage) != child_) {
      return std::nullopt;
    }
    if (WIFSTOPPED(status) || WIFCONTINUED(status)) {
      isStopped_ = WIFSTOPPED(status);
      return std::nullopt;
    }
    ReadReports();
    if (WIFSIGNALED(status)) {
      return ResultOf(How::kSignal, WTERMSIG(status), usage);
    }
    const How how = reports_.HasReturned()  ? How::kReturned
                    : reports_.HasStarted() ? How::kExited
                                            : How::kNotLoaded;
    return ResultOf(how, WEXITSTATUS(status), usage);
  }

  WorkerResult Kill(How how) {
    kill(child_, SIGKILL);
    struct rusage usage {};
    while (wait4(child_, nullptr, 0, &usage) < 0 && errno == EINTR) {
    }
    ReadReports();
    return ResultOf(how, 0, usage);
  }

  WorkerResult ResultOf(How how, int number, const struct rusage& usage) {
    // In KiB (getrusage(2)).
    const std::uint64_t peakMemory = static_cast<std::uint64_t>(usage.ru_maxrss) << 10U;
    return {how,
            number,
            reports_.IsMemoryRefused(),
            std::move(reports_.Notes()),
            std::move(reports_.Text()),
            peakMemory,
            timeOf(usage.ru_utime) + timeOf(usage.ru_stime)};
  }

  pid_t child_;
  // Readable when the worker has ended.
  Descriptor end_;
  const Descriptor& signals_;
  // Closed when the worker has closed its end.
  Descriptor report_;
  WorkerLimits limits_;
  Clock::time_point lastLook_ = Clock::now();
  Clock::duration spent_{};
  bool isStopped_ = false;
  WorkerReports reports_;
};

}  // namespace

bool isMemoryGranted(std::uint64_t bytes) {
  struct rlimit space {};
  struct rlimit data {};
  if (getrlimit(RLIMIT_AS, &space) != 0 || getrlimit(RLIMIT_DATA, &data) != 0) {
    return true;
  }
  return space.rlim_cur >= addressSpaceInUse() + bytes && data.rlim_cur >= bytes;
}

std::optional<std::chrono::seconds> grantedProcessorTime() {
  struct rlimit limits {};
  if (getrlimit(RLIMIT_CPU, &limits) != 0 || limits.rlim_cur == RLIM_INFINITY) {
    return std::nullopt;
  }
  return std::chrono::seconds(limits.rlim_cur);
}

WorkerResult runWorker(const WorkerCall& call, const WorkerLimits& limits) {
  std::fflush(stdout);
  const ScopedSignalBlock deferred;
  heedChildren();
  const Descriptor signals = openSignals();
  Pipe report = openPipe();
  if (!signals.IsOpen() || !report.writer.IsOpen()) {
    return {How::kNotStarted, errno};
  }
  pid_t child = -1;
  if (call.from != nullptr) {
    child = static_cast<pid_t>(
        call.from->Fork(call, limits, report.writer.Number(), signals.Number()).value_or(-1));
  }
  if (child < 0) {
    if (const int error = startWorker(call, limits, report.writer.Number(), child); error != 0) {
      return {How::kNotStarted, error};
    }
  }
  report.writer.Close();
  return Watch(child, signals, std::move(report.reader), call, limits).Run();
}

}  // namespace dxf2d
