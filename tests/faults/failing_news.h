// The tests' operator new, which counts what it gives and fails when told to.
#pragma once

#include <cstdint>

// While one lives, allocations of its thread fail with std::bad_alloc: the `nth` from its
// construction on, counted from 1, or that one and all that follow. One at a time in a thread.
class FailingNews {
 public:
  enum class Kind { kOnce, kFromThereOn };

  FailingNews(std::uint64_t nth, Kind kind);
  ~FailingNews();
  FailingNews(const FailingNews&) = delete;
  FailingNews& operator=(const FailingNews&) = delete;

  // Whether an allocation has failed.
  bool Failed() const;
};

// Allocations of the process that are not freed yet.
std::int64_t liveAllocations();
// Allocations of the calling thread, and those of them that asked for more than the usual
// alignment.
std::uint64_t allocationsMade();
std::uint64_t alignedAllocationsMade();
