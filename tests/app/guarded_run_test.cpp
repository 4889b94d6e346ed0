#include "app/guarded_run.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "app/deferred_end.h"
#include "tests/support/sanitizers.h"

namespace {

constexpr std::uint64_t kMemory = std::uint64_t{64} << 20;

TEST(RunGuarded, PassesTheExitCodeOn) {
  const GuardedEnd end = runGuarded([] { return 7; });
  EXPECT_TRUE(end.Returned(7));
  EXPECT_FALSE(end.Returned(0));
}

TEST(RunGuarded, WorkThatEndsItsProcessHasNotReturned) {
  for (const int code : {0, 7}) {
    const GuardedEnd end = runGuarded([code]() -> int { std::_Exit(code); });
    EXPECT_EQ(end.how, GuardedEnd::How::kExited);
    EXPECT_EQ(end.number, code);
    EXPECT_FALSE(end.Returned(code));
  }
}

TEST(RunGuarded, OutlivesWorkThatEndsByASignal) {
  const GuardedEnd end = runGuarded([] { return raise(SIGKILL); });
  EXPECT_EQ(end.how, GuardedEnd::How::kSignal);
  EXPECT_EQ(end.number, SIGKILL);
}

TEST(RunGuarded, ARequestToEndEndsTheWorkAndWaitsForTheCleaningUp) {
  EXPECT_EXIT(
      {
        const DeferredEnd deferred;
        const GuardedEnd end = runGuarded([] {
          kill(getppid(), SIGTERM);
          while (true) pause();
          return 0;
        });
        std::fputs(end.how == GuardedEnd::How::kAskedToEnd ? "cleaned up" : "not asked", stderr);
      },
      testing::KilledBySignal(SIGTERM), "cleaned up");
}

TEST(RunGuarded, ARequestThatIsIgnoredIsNotHeard) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGHUP, &ignore, &before), 0);
  const GuardedEnd end = runGuarded([] {
    kill(getppid(), SIGHUP);
    return 7;
  });
  sigaction(SIGHUP, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST(RunGuarded, ChildrenThatAreNotWaitedForDoNotHideItsEnd) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGCHLD, &ignore, &before), 0);
  const GuardedEnd end = runGuarded([] { return 7; });
  sigaction(SIGCHLD, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST(RunGuarded, WorkBeyondItsTimeIsEnded) {
  const GuardedEnd end = runGuarded(
      [] {
        while (true) pause();
        return 0;
      },
      {0, std::chrono::milliseconds(1)});
  EXPECT_EQ(end.how, GuardedEnd::How::kOutOfTime);
}

// Uses at least `bytes` of the stack. Returns what was written at its end.
int useStack(std::size_t bytes) {
  volatile char block[4096];
  block[0] = 1;
  if (bytes <= sizeof block) return block[0];
  return useStack(bytes - sizeof block) + block[0] - 1;
}

TEST(RunGuarded, StackGrowsFarBeyondTheUsual) {
  NEEDS_STACK_LIMITS();
  const GuardedEnd end = runGuarded([] { return useStack(std::size_t{64} << 20); });
  EXPECT_TRUE(end.Returned(1));
}

TEST(RunGuarded, MemoryBeyondItsShareIsNotThere) {
  NEEDS_MEMORY_LIMITS();
  const GuardedEnd end = runGuarded(
      [] {
        try {
          std::vector<char> much(std::size_t{1} << 30);
          return much.data() == nullptr ? 1 : 0;
        } catch (const std::bad_alloc&) {
          return 5;
        }
      },
      {kMemory, std::chrono::milliseconds(0)});
  EXPECT_TRUE(end.Returned(5));
}

}  // namespace
