#include "app/guarded_run.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <new>
#include <vector>

namespace {

constexpr std::uint64_t kMemory = std::uint64_t{64} << 20;

TEST(RunGuarded, PassesTheExitCodeOn) {
  const GuardedEnd end = runGuarded([] { return 7; });
  EXPECT_EQ(end.exitCode, 7);
  EXPECT_EQ(end.signal, 0);
}

TEST(RunGuarded, OutlivesWorkThatEndsByASignal) {
  const GuardedEnd end = runGuarded([] { return raise(SIGKILL); });
  EXPECT_EQ(end.signal, SIGKILL);
}

TEST(RunGuarded, PassesARequestToEndOnAndOutlivesIt) {
  const GuardedEnd end = runGuarded([] {
    kill(getppid(), SIGTERM);
    while (true) pause();
    return 0;
  });
  EXPECT_EQ(end.signal, SIGTERM);
}

// The sanitizers have allocators of their own, which end the process.
#if !defined(__SANITIZE_ADDRESS__)
TEST(RunGuarded, MemoryBeyondItsShareIsNotThere) {
  const GuardedEnd end = runGuarded(
      [] {
        try {
          std::vector<char> much(std::size_t{1} << 30);
          return much.data() == nullptr ? 1 : 0;
        } catch (const std::bad_alloc&) {
          return 5;
        }
      },
      kMemory);
  EXPECT_EQ(end.exitCode, 5);
}
#endif

}  // namespace
