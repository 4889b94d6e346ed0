#include "app/deferred_end.h"

#include <array>

namespace {

constexpr std::array kEndRequests{SIGINT, SIGQUIT, SIGTERM, SIGHUP};

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
  return requests;
}

DeferredEnd::DeferredEnd() : before_() {
  const sigset_t requests = endRequests();
  pthread_sigmask(SIG_BLOCK, &requests, &before_);
}

DeferredEnd::~DeferredEnd() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
