// Runs work that foreign code may bring down.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

// What the work may take; 0 is without end.
struct GuardLimits {
  // Bytes of address space beyond what is in use at its start.
  std::uint64_t memory = 0;
  std::chrono::milliseconds time{0};
};

struct GuardedEnd {
  enum class How {
    kReturned,    // the work returned `number`
    kExited,      // something in it ended its process, with the exit code `number`
    kSignal,      // the system ended it with the signal `number`
    kOutOfTime,   // it took longer than it may, and was ended
    kAskedToEnd,  // this process is asked to end, and the work was ended
    kNotStarted,  // no process could be made, for the reason errno `number`
  };
  How how = How::kReturned;
  int number = 0;

  bool Returned(int code) const { return how == How::kReturned && number == code; }
};

// Whether the system grants its processes, by limits of its own, as many bytes of memory.
bool isMemoryGranted(std::uint64_t bytes);

// Runs `work`, which returns an exit code, in a process of its own, so that a fault in it leaves
// this one to say so and to clean up. Beyond its memory its allocations fail with std::bad_alloc;
// its stack may grow far beyond the usual, as deep models ask of their readers. Standard output and
// error are shared and flushed before and after; nothing that is destroyed after `work` is
// destroyed there. To be called while there is one thread.
//
// After kAskedToEnd the request is pending: this process ends by it as soon as no DeferredEnd
// holds it back, which without any is before this returns.
GuardedEnd runGuarded(const std::function<int()>& work, const GuardLimits& limits = {});
