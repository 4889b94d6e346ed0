// Requests to end, put off while there is something to clean up.
#pragma once

#include <csignal>

// The requests of a user or of the system to end: Ctrl-C, a closed terminal, a shutdown, a timer or
// a scheduler that has waited long enough. Those that the process was started to ignore, as under
// nohup, are not among them, nor are the signals of its own faults.
sigset_t endRequests();

// Lets requests to end through that the program was started to hold back: some launchers leave them
// so by mistake. For the start of the program.
void admitEndRequests();

// While one lives, requests to end are held back; the last one's destructor lets them through, and
// the process then ends by the signal, as if nothing had held it. What lies between should be short
// or wait with runGuarded, which answers them. For the main thread; to be destroyed in the reverse
// order of construction.
class DeferredEnd {
 public:
  DeferredEnd();
  ~DeferredEnd();
  DeferredEnd(const DeferredEnd&) = delete;
  DeferredEnd& operator=(const DeferredEnd&) = delete;

 private:
  sigset_t before_;
};
