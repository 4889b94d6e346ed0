#include "app/process/termination_signals.h"

#include <array>

#include "app/process/signal_set_posix.h"

namespace dxf2d {

namespace {

// All signals that end a process by default, except those that report a fault in it.
constexpr std::array kTerminationSignals{SIGINT,  SIGQUIT, SIGTERM,  SIGHUP,  SIGALRM,
                                         SIGUSR1, SIGUSR2, SIGXCPU,  SIGPROF, SIGVTALRM,
                                         SIGIO,   SIGPWR,  SIGSTKFLT};

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

sigset_t terminationSignals() {
  sigset_t requests;
  sigemptyset(&requests);
  for (const int signal : kTerminationSignals) {
    if (!isIgnored(signal)) {
      sigaddset(&requests, signal);
    }
  }
  for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) {
    if (!isIgnored(signal)) {
      sigaddset(&requests, signal);
    }
  }
  return requests;
}

void unblockTerminationSignals() {
  const sigset_t requests = terminationSignals();
  pthread_sigmask(SIG_UNBLOCK, &requests, nullptr);
}

void ignoreWriteSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool isTerminationPending() {
  sigset_t pending;
  if (sigpending(&pending) != 0 || sigisemptyset(&pending) != 0) {
    return false;
  }
  const sigset_t requests = terminationSignals();
  for (int signal = 1; signal < NSIG; ++signal) {
    if (sigismember(&pending, signal) == 1 && sigismember(&requests, signal) == 1) {
      return true;
    }
  }
  return false;
}

struct ScopedSignalBlock::Mask {
  sigset_t signals{};
};

ScopedSignalBlock::ScopedSignalBlock() : before_(std::make_unique<Mask>()) {
  const sigset_t requests = terminationSignals();
  pthread_sigmask(SIG_BLOCK, &requests, &before_->signals);
}

ScopedSignalBlock::~ScopedSignalBlock() {
  pthread_sigmask(SIG_SETMASK, &before_->signals, nullptr);
}

}  // namespace dxf2d
