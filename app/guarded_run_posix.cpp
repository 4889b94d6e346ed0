#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "app/deferred_end.h"
#include "app/guarded_run.h"
#include "app/shared_value.h"

namespace {

using Clock = std::chrono::steady_clock;
using How = GuardedEnd::How;

// ---- In the working process

// The address space in use, in bytes; 0 when the system does not say.
rlim_t addressSpaceInUse() {
  unsigned long long pages = 0;
  std::FILE* statistics = std::fopen("/proc/self/statm", "r");
  if (statistics == nullptr) return 0;
  if (std::fscanf(statistics, "%llu", &pages) != 1) pages = 0;
  std::fclose(statistics);
  return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

// No more than it is already limited to.
void limit(int resource, rlim_t amount) {
  struct rlimit limits {};
  if (getrlimit(resource, &limits) != 0) return;
  limits.rlim_cur = std::min<rlim_t>(limits.rlim_cur, amount);
  setrlimit(resource, &limits);
}

// At the hard limit the system kills without a word; a second before, it says why.
void announceEndOfProcessorTime() {
  struct rlimit limits {};
  if (getrlimit(RLIMIT_CPU, &limits) != 0 || limits.rlim_max == RLIM_INFINITY) return;
  if (limits.rlim_max > 1) limit(RLIMIT_CPU, limits.rlim_max - 1);
}

// Readers recurse with the depth of their models. The system lays out at least this much room for a
// stack, whatever its limit was when the program started.
constexpr rlim_t kStackRoom = rlim_t{120} << 20;

void raiseStack() {
  struct rlimit limits {};
  if (getrlimit(RLIMIT_STACK, &limits) != 0) return;
  limits.rlim_cur = std::min(limits.rlim_max, kStackRoom);
  setrlimit(RLIMIT_STACK, &limits);
}

[[noreturn]] void workAlone(const std::function<int()>& work, std::uint64_t memory, pid_t parent,
                            bool& returned) {
  const sigset_t requests = endRequests();
  pthread_sigmask(SIG_UNBLOCK, &requests, nullptr);
  // Without its parent nobody hears the result.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) std::_Exit(1);
  // A reader's fault is reported in a sentence; a core file would be litter in the user's
  // directory.
  limit(RLIMIT_CORE, 0);
  raiseStack();
  announceEndOfProcessorTime();
  if (memory != 0) limit(RLIMIT_AS, addressSpaceInUse() + memory);
  const int result = work();
  std::fflush(nullptr);
  returned = true;
  // Not exit(): what is freed there goes with the process anyway.
  std::_Exit(result);
}

// ---- In the waiting process

// SIGCHLD must arrive, and wait for us, whatever the program was started with.
class ChildSignal {
 public:
  ChildSignal() : actionBefore_(), maskBefore_() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(SIGCHLD, &action, &actionBefore_);
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &child, &maskBefore_);
  }
  ~ChildSignal() {
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    sigaction(SIGCHLD, &actionBefore_, nullptr);
  }
  ChildSignal(const ChildSignal&) = delete;
  ChildSignal& operator=(const ChildSignal&) = delete;

  const sigset_t& MaskBefore() const { return maskBefore_; }

 private:
  struct sigaction actionBefore_;
  sigset_t maskBefore_;
};

timespec timeUntil(Clock::time_point end) {
  using std::chrono::nanoseconds;
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  const std::int64_t left = std::max(nanoseconds(end - Clock::now()), nanoseconds(0)).count();
  return {left / kNanosecondsPerSecond, left % kNanosecondsPerSecond};
}

// The next of `signals`, or 0 at the time `end`; none is without end.
int nextSignal(const sigset_t& signals, const std::optional<Clock::time_point>& end) {
  while (true) {
    int signal = 0;
    if (end) {
      const timespec left = timeUntil(*end);
      signal = sigtimedwait(&signals, nullptr, &left);
    } else {
      signal = sigwaitinfo(&signals, nullptr);
    }
    if (signal > 0) return signal;
    if (errno == EAGAIN) return 0;
  }
}

int statusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

GuardedEnd endNow(pid_t child, How how) {
  kill(child, SIGKILL);
  statusOf(child);
  return {how, 0};
}

GuardedEnd waitFor(pid_t child, std::chrono::milliseconds time, const bool& returned) {
  std::optional<Clock::time_point> end;
  if (time.count() != 0) end = Clock::now() + time;
  sigset_t signals = endRequests();
  sigaddset(&signals, SIGCHLD);
  while (true) {
    const int signal = nextSignal(signals, end);
    if (signal == 0) return endNow(child, How::kOutOfTime);
    if (signal != SIGCHLD) {
      // Taken from the pending ones above; it is to be found there again.
      raise(signal);
      return endNow(child, How::kAskedToEnd);
    }
    int status = 0;
    // Another child of this process, or this one only stopped.
    if (waitpid(child, &status, WNOHANG) != child) continue;
    if (!WIFEXITED(status)) return {How::kSignal, WTERMSIG(status)};
    return {returned ? How::kReturned : How::kExited, WEXITSTATUS(status)};
  }
}

}  // namespace

bool isMemoryGranted(std::uint64_t bytes) {
  struct rlimit space {};
  struct rlimit data {};
  if (getrlimit(RLIMIT_AS, &space) != 0 || getrlimit(RLIMIT_DATA, &data) != 0) return true;
  return space.rlim_cur >= addressSpaceInUse() + bytes && data.rlim_cur >= bytes;
}

GuardedEnd runGuarded(const std::function<int()>& work, const GuardLimits& limits) {
  std::fflush(nullptr);
  const DeferredEnd deferred;
  const ChildSignal childSignal;
  // Foreign code may call exit(0) in the middle of the work, so that the exit code alone says
  // nothing.
  SharedValue<bool> returned;
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) return {How::kNotStarted, errno};
  if (child == 0) {
    pthread_sigmask(SIG_SETMASK, &childSignal.MaskBefore(), nullptr);
    workAlone(work, limits.memory, parent, *returned);
  }
  return waitFor(child, limits.time, *returned);
}
