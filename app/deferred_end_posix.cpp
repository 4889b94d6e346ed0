#include "app/deferred_end.h"

#include <array>

namespace {

// All that end a process, but for those that tell of a fault in it.
constexpr std::array kEndRequests{SIGINT,  SIGQUIT, SIGTERM,   SIGHUP, SIGALRM, SIGUSR1,  SIGUSR2,
                                  SIGXCPU, SIGPROF, SIGVTALRM, SIGIO,  SIGPWR,  SIGSTKFLT};

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

sigset_t endRequests() {
  sigset_t requests;
  sigemptyset(&requests);
  for (const int signal : kEndRequests) {
    if (!isIgnored(signal)) sigaddset(&requests, signal);
  }
  for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) {
    if (!isIgnored(signal)) sigaddset(&requests, signal);
  }
  return requests;
}

void admitEndRequests() {
  const sigset_t requests = endRequests();
  pthread_sigmask(SIG_UNBLOCK, &requests, nullptr);
}

DeferredEnd::DeferredEnd() : before_() {
  const sigset_t requests = endRequests();
  pthread_sigmask(SIG_BLOCK, &requests, &before_);
}

DeferredEnd::~DeferredEnd() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
