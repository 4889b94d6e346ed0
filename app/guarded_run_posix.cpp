#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "app/guarded_run.h"

namespace {

constexpr std::array kPassedOn{SIGINT, SIGQUIT, SIGTERM, SIGHUP};

// The process that works, for the handler.
volatile std::sig_atomic_t workingProcess = 0;

void passOn(int signal) { kill(static_cast<pid_t>(workingProcess), signal); }

sigset_t passedOn() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kPassedOn) sigaddset(&signals, signal);
  return signals;
}

// Waits for the working process. Requests to end go to it, so that this one can still clean up;
// they are blocked before and come through here, under the mask `mask`.
int waitFor(pid_t child, const sigset_t& mask) {
  workingProcess = child;
  std::array<struct sigaction, kPassedOn.size()> before{};
  struct sigaction action {};
  action.sa_handler = passOn;
  for (std::size_t i = 0; i < kPassedOn.size(); ++i) {
    sigaction(kPassedOn[i], nullptr, &before[i]);
    // What is ignored, as under nohup, stays so.
    if (before[i].sa_handler != SIG_IGN) sigaction(kPassedOn[i], &action, nullptr);
  }
  sigprocmask(SIG_SETMASK, &mask, nullptr);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  for (std::size_t i = 0; i < kPassedOn.size(); ++i) sigaction(kPassedOn[i], &before[i], nullptr);
  return status;
}

// The address space in use, in bytes; 0 when the system does not say.
rlim_t addressSpaceInUse() {
  unsigned long long pages = 0;
  std::FILE* statistics = std::fopen("/proc/self/statm", "r");
  if (statistics == nullptr) return 0;
  if (std::fscanf(statistics, "%llu", &pages) != 1) pages = 0;
  std::fclose(statistics);
  return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

// Beyond the limit, allocations fail, which ends in an exception.
void limitMemory(std::uint64_t bytes) {
  const rlim_t used = addressSpaceInUse();
  struct rlimit limit {};
  if (used == 0 || getrlimit(RLIMIT_AS, &limit) != 0) return;
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, used + bytes);
  setrlimit(RLIMIT_AS, &limit);
}

}  // namespace

GuardedEnd runGuarded(const std::function<int()>& work, std::uint64_t memory) {
  std::fflush(nullptr);
  const pid_t parent = getpid();
  const sigset_t blocked = passedOn();
  sigset_t mask;
  sigprocmask(SIG_BLOCK, &blocked, &mask);
  const pid_t child = fork();
  if (child <= 0) sigprocmask(SIG_SETMASK, &mask, nullptr);
  if (child < 0) return {work(), 0};
  if (child == 0) {
    // Without its parent nobody hears the result.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) std::_Exit(1);
    if (memory != kUnlimitedMemory) limitMemory(memory);
    const int result = work();
    std::fflush(nullptr);
    // Not exit(): what is freed there goes with the process anyway.
    std::_Exit(result);
  }
  const int status = waitFor(child, mask);
  if (WIFEXITED(status)) return {WEXITSTATUS(status), 0};
  return {0, WTERMSIG(status)};
}
