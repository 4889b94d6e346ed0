// Runs work again and again, each time with another of its allocations failing.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "tests/faults/failing_news.h"

// Both run in a thread of their own, new for each failing allocation, so that what a thread keeps
// for later calls is made anew and may fail too.
struct SweptWork {
  // Done with a failing allocation. Answers whether it was done; an orderly refusal is false. It
  // may let out std::bad_alloc and CFileException and nothing else.
  std::function<bool()> faulted;
  // Done after that, with memory again: expects that what `faulted` left is right when it was done,
  // and in any case that doing it anew gives what is right.
  std::function<void(bool done)> verify;
};

// Allocations that fail once, and those from which on all fail.
inline constexpr FailingNews::Kind kBothKinds[] = {FailingNews::Kind::kOnce,
                                                   FailingNews::Kind::kFromThereOn};

// Lets each allocation of the work fail, one after the other, until there is none left to fail, and
// expects that each time no memory and no descriptor stays behind. Returns how many there were.
std::uint64_t sweepAllocations(const SweptWork& work, FailingNews::Kind kind);

// The same for `count` of the allocations, drawn with `seed`, the early ones more often.
void sampleAllocations(const SweptWork& work, FailingNews::Kind kind, int count, unsigned seed);
