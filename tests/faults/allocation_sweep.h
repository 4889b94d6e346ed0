// Runs work repeatedly, each time with another of its allocations failing.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "tests/faults/failing_news.h"

// Both run in a thread of their own, new for each failing allocation, so that what a thread keeps
// for later calls is made anew and may fail too.
struct SweptWork {
  // Runs with a failing allocation. Returns whether the work was done; false for an orderly
  // refusal. May throw std::bad_alloc and CFileException and nothing else.
  std::function<bool()> faulted;
  // Runs after that, with memory available: expects that the result of `faulted` is right if it was
  // done, and in any case that doing the work again gives the right result.
  std::function<void(bool done)> verify;
  // Frees what the work keeps for later calls whatever their thread, so that it is made anew, too;
  // may be empty.
  std::function<void()> forget{};
};

// Allocations that fail once, and those from which on all fail.
inline constexpr FailingNews::Kind kBothKinds[] = {FailingNews::Kind::kOnce,
                                                   FailingNews::Kind::kFromThereOn};

// Lets each allocation of the work fail, one after the other, and expects that each time no memory
// and no descriptor leaks. Returns how many allocations there were.
std::uint64_t sweepAllocations(const SweptWork& work, FailingNews::Kind kind);

// The same for `count` of the allocations, drawn with `seed`, the early ones more often.
void sampleAllocations(const SweptWork& work, FailingNews::Kind kind, int count, unsigned seed);
