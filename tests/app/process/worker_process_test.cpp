#include "app/process/worker_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>

#include "app/process/descriptor.h"
#include "app/process/termination_signals.h"
#include "tests/support/sanitizers.h"

namespace dxf2d {

namespace {

using How = WorkerResult::How;

WorkerResult run(const char* task, const std::vector<std::string>& words = {},
                 const WorkerLimits& limits = {}) {
  return runWorker({task, words, {}, false, TEST_WORKER}, limits);
}

TEST(RunWorker, PassesTheExitCodeOn) {
  const WorkerResult end = run("return", {"7"});
  EXPECT_TRUE(end.Returned(7));
  EXPECT_FALSE(end.Returned(0));
}

TEST(RunWorker, WorkThatEndsItsProcessHasNotReturned) {
  for (const int code : {0, 7}) {
    const WorkerResult end = run("exit", {std::to_string(code)});
    EXPECT_EQ(end.how, How::kExited);
    EXPECT_EQ(end.number, code);
    EXPECT_FALSE(end.Returned(code));
  }
}

TEST(RunWorker, ReportsWorkThatEndsByASignal) {
  const WorkerResult end = run("raise", {std::to_string(SIGKILL)});
  EXPECT_EQ(end.how, How::kSignal);
  EXPECT_EQ(end.number, SIGKILL);
}

TEST(RunWorker, TerminationSignalEndsTheWorkAndWaitsForItsCleanup) {
  EXPECT_EXIT(
      {
        const ScopedSignalBlock deferred;
        const WorkerResult end = run("signal the parent and wait", {std::to_string(SIGTERM)});
        std::fputs(end.how == How::kTerminated ? "cleaned up" : "not asked", stderr);
      },
      testing::KilledBySignal(SIGTERM), "cleaned up");
}

TEST(RunWorker, IgnoredTerminationSignalHasNoEffect) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGHUP, &ignore, &before), 0);
  const WorkerResult end = run("signal the parent", {std::to_string(SIGHUP)});
  sigaction(SIGHUP, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST(RunWorker, ChildrenThatAreNotWaitedForDoNotHideItsEnd) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGCHLD, &ignore, &before), 0);
  const WorkerResult end = run("return", {"7"});
  sigaction(SIGCHLD, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST(RunWorker, WorkBeyondTheTimeLimitIsEnded) {
  WorkerLimits limits;
  limits.time = std::chrono::milliseconds(1);
  EXPECT_EQ(run("wait", {}, limits).how, How::kTimedOut);
}

TEST(RunWorker, TimeInWhichItIsStoppedDoesNotCount) {
  WorkerLimits limits;
  limits.time = std::chrono::seconds(2);
  EXPECT_TRUE(run("be stopped", {"2500"}, limits).Returned(0));
}

TEST(RunWorker, StackGrowsFarBeyondTheUsual) {
  NEEDS_STACK_LIMITS();
  EXPECT_TRUE(run("use the stack").Returned(1));
}

TEST(RunWorker, MemoryBeyondTheLimitIsRefused) {
  NEEDS_MEMORY_LIMITS();
  WorkerLimits limits;
  limits.addressSpace = std::uint64_t{64} << 20;
  EXPECT_TRUE(run("reserve memory", {}, limits).Returned(5));
}

TEST(RunWorker, MemoryInUseBeyondTheLimitEndsTheWork) {
  WorkerLimits limits;
  limits.residentMemory = std::uint64_t{64} << 20;
  EXPECT_EQ(run("touch memory", {"256"}, limits).how, How::kMemoryExceeded);
}

TEST(RunWorker, WhatTheTaskTellsComesInOrderAndWhole) {
  const std::string large(300'000, 'x');
  EXPECT_EQ(run("tell", {"one ", "two ", "", "three\n"}).text, "one two three\n");
  const WorkerResult end = run("tell", {large.substr(0, 100'000), large.substr(100'000, 100'000)});
  EXPECT_EQ(end.text.size(), 200'000U);
}

TEST(RunWorker, WorkThatTellsWithoutEndIsEndedInTime) {
  WorkerLimits limits;
  limits.time = std::chrono::milliseconds(50);
  EXPECT_EQ(run("tell without end", {}, limits).how, How::kTimedOut);
}

TEST(RunWorker, DescriptorsThatItDoesNotNeedAreClosed) {
  // As a shell leaves them: not closed on exec.
  const Descriptor needed(open("/dev/null", O_RDONLY));
  const Descriptor other(open("/dev/null", O_RDONLY));
  const WorkerResult end =
      runWorker({"tell descriptors", {}, {needed.Number()}, false, TEST_WORKER});
  EXPECT_EQ(end.text, std::to_string(needed.Number()) + " ");
}

TEST(RunWorker, StandardStreamsAreItsOnlyWhereItIsToldSo) {
  testing::internal::CaptureStdout();
  EXPECT_TRUE(run("print", {"noise"}).Returned(0));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  testing::internal::CaptureStdout();
  EXPECT_TRUE(runWorker({"print", {"words"}, {}, true, TEST_WORKER}).Returned(0));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "words");
}

TEST(RunWorker, AMissingProgramIsNotStarted) {
  const WorkerResult end = runWorker({"return", {"7"}, {}, false, "/no/such/worker"});
  EXPECT_EQ(end.how, How::kNotStarted);
  EXPECT_EQ(end.number, ENOENT);
}

TEST(RunWorker, AProgramThatIsNoWorkerIsNotLoaded) {
  EXPECT_EQ(runWorker({"return", {"7"}, {}, false, "/bin/false"}).how, How::kNotLoaded);
}

}  // namespace

}  // namespace dxf2d
