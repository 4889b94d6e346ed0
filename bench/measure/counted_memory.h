// Counts what operator new gives out, in this program and in the modules that it loads.
#pragma once

#include <cstddef>

// Bytes that are given out now, as the allocator rounds them up.
std::size_t liveBytes();

// The most bytes given out at one time since the last call of forgetPeak, and what that call found.
std::size_t peakBytes();
void forgetPeak();

// The bytes beyond those given out before that `work()` has at its peak.
template <class Work>
double extraBytesOf(Work work) {
  const std::size_t before = liveBytes();
  forgetPeak();
  work();
  return static_cast<double>(peakBytes() - before);
}
