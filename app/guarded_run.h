// Runs work that foreign code may bring down.
#pragma once

#include <cstdint>
#include <functional>

// How a guarded run ended: with an exit code, or by a signal of the system, 0 when by none.
struct GuardedEnd {
  int exitCode = 0;
  int signal = 0;
};

inline constexpr std::uint64_t kUnlimitedMemory = 0;

// Runs `work`, which returns an exit code, in a process of its own, so that a fault in it leaves
// this one to say so and to clean up. There it may take up to `memory` bytes more than are in use;
// beyond that its allocations fail with std::bad_alloc. Where no process can be made, `work` runs
// in this one. Standard output and error are shared and flushed before and after; nothing that is
// destroyed after `work` is destroyed there. To be called while there is one thread.
GuardedEnd runGuarded(const std::function<int()>& work, std::uint64_t memory = kUnlimitedMemory);
