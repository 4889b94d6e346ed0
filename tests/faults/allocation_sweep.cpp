#include "tests/faults/allocation_sweep.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <new>
#include <random>
#include <thread>

#include "platform/cfile_exception.h"

namespace {

std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

struct Attempt {
  bool done = false;
  // Whether the work came as far as the allocation that was to fail.
  bool failed = false;
};

Attempt attempt(const SweptWork& work, std::uint64_t nth, FailingNews::Kind kind) {
  Attempt result;
  bool isKnown = true;
  {
    const FailingNews news(nth, kind);
    try {
      result.done = work.faulted();
    } catch (const std::bad_alloc&) {
    } catch (const CFileException&) {
    } catch (...) {
      isKnown = false;
    }
    result.failed = news.Failed();
  }
  EXPECT_TRUE(isKnown) << "another exception came out";
  EXPECT_TRUE(result.done || result.failed) << "refused with all the memory there is";
  return result;
}

void forget(const SweptWork& work) {
  if (work.forget) {
    work.forget();
  }
}

// Returns whether the allocation was reached.
bool failsAt(const SweptWork& work, std::uint64_t nth, FailingNews::Kind kind) {
  SCOPED_TRACE("allocation " + std::to_string(nth) +
               (kind == FailingNews::Kind::kOnce ? "" : " and all after it"));
  const std::ptrdiff_t descriptors = openDescriptors();
  const std::int64_t live = liveAllocations();
  Attempt result;
  std::thread([&] {
    result = attempt(work, nth, kind);
    work.verify(result.done);
    forget(work);
  }).join();
  EXPECT_EQ(liveAllocations(), live);
  EXPECT_EQ(openDescriptors(), descriptors);
  return result.failed;
}

std::uint64_t countAllocations(const SweptWork& work) {
  std::uint64_t count = 0;
  std::thread([&] {
    // Not counted is what the process makes once, such as the directory of its catalogs.
    EXPECT_TRUE(work.faulted());
    forget(work);
    const std::uint64_t before = allocationsMade();
    EXPECT_TRUE(work.faulted());
    count = allocationsMade() - before;
    work.verify(true);
    forget(work);
  }).join();
  return count;
}

}  // namespace

std::uint64_t sweepAllocations(const SweptWork& work, FailingNews::Kind kind) {
  const std::uint64_t count = countAllocations(work);
  std::uint64_t nth = 1;
  while (!testing::Test::HasFailure() && failsAt(work, nth, kind)) {
    // A whole sweep takes too long where each allocation is checked.
    nth += DXF2D_SWEEP_STEP;
  }
  EXPECT_GT(nth, count) << "the work made fewer allocations than when it was counted";
  return count;
}

void sampleAllocations(const SweptWork& work, FailingNews::Kind kind, int count, unsigned seed) {
  const auto last = static_cast<double>(countAllocations(work));
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> exponent(0.0, std::log(last));
  const int drawn = (count - 1) / DXF2D_SWEEP_STEP + 1;
  for (int i = 0; i < drawn && !testing::Test::HasFailure(); ++i) {
    const auto nth = static_cast<std::uint64_t>(std::exp(exponent(random)));
    EXPECT_TRUE(failsAt(work, nth, kind)) << "allocation " << nth << " of " << last;
  }
}
