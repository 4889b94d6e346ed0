#include "app/process/worker_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <utility>

#include "app/process/descriptor.h"
#include "app/process/termination_signals.h"
#include "app/process/worker_template.h"
#include "tests/support/sanitizers.h"

namespace dxf2d {

namespace {

using How = WorkerResult::How;

// As the worker's task "tell file" says it.
std::string identityText(int descriptor) {
  struct stat status {};
  EXPECT_EQ(fstat(descriptor, &status), 0);
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

enum class Way { kStarted, kForked };

// Runs tasks of the test's worker program, in workers that are started or forked.
class RunWorker : public testing::TestWithParam<Way> {
 protected:
  WorkerCall CallTo(const char* task, std::vector<std::string> words = {},
                    std::vector<int> descriptors = {}) {
    WorkerCall call{task, std::move(words), std::move(descriptors), false, TEST_WORKER};
    call.from = GetParam() == Way::kForked ? &template_ : nullptr;
    return call;
  }

  WorkerResult Run(const char* task, const std::vector<std::string>& words = {},
                   const WorkerLimits& limits = {}) {
    return runWorker(CallTo(task, words), limits);
  }

 private:
  WorkerTemplate template_{TEST_WORKER};
};

INSTANTIATE_TEST_SUITE_P(Workers, RunWorker, testing::Values(Way::kStarted, Way::kForked),
                         [](const testing::TestParamInfo<Way>& way) {
                           return way.param == Way::kStarted ? "Started" : "Forked";
                         });

TEST_P(RunWorker, PassesTheExitCodeOn) {
  const WorkerResult end = Run("return", {"7"});
  EXPECT_TRUE(end.Returned(7));
  EXPECT_FALSE(end.Returned(0));
}

TEST_P(RunWorker, WorkThatEndsItsProcessHasNotReturned) {
  for (const int code : {0, 7}) {
    const WorkerResult end = Run("exit", {std::to_string(code)});
    EXPECT_EQ(end.how, How::kExited);
    EXPECT_EQ(end.number, code);
    EXPECT_FALSE(end.Returned(code));
  }
}

TEST_P(RunWorker, ReportsWorkThatEndsByASignal) {
  const WorkerResult end = Run("raise", {std::to_string(SIGKILL)});
  EXPECT_EQ(end.how, How::kSignal);
  EXPECT_EQ(end.number, SIGKILL);
}

TEST_P(RunWorker, TerminationSignalEndsTheWorkAndWaitsForItsCleanup) {
  EXPECT_EXIT(
      {
        const ScopedSignalBlock deferred;
        const WorkerResult end = Run("signal the parent and wait", {std::to_string(SIGTERM)});
        std::fputs(end.how == How::kTerminated ? "cleaned up" : "not asked", stderr);
      },
      testing::KilledBySignal(SIGTERM), "cleaned up");
}

TEST_P(RunWorker, IgnoredTerminationSignalHasNoEffect) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGHUP, &ignore, &before), 0);
  const WorkerResult end = Run("signal the parent", {std::to_string(SIGHUP)});
  sigaction(SIGHUP, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST_P(RunWorker, ChildrenThatAreNotWaitedForDoNotHideItsEnd) {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGCHLD, &ignore, &before), 0);
  const WorkerResult end = Run("return", {"7"});
  sigaction(SIGCHLD, &before, nullptr);
  EXPECT_TRUE(end.Returned(7));
}

TEST_P(RunWorker, WorkBeyondTheTimeLimitIsEnded) {
  WorkerLimits limits;
  limits.time = std::chrono::milliseconds(1);
  EXPECT_EQ(Run("wait", {}, limits).how, How::kTimedOut);
}

TEST_P(RunWorker, TimeInWhichItIsStoppedDoesNotCount) {
  WorkerLimits limits;
  limits.time = std::chrono::seconds(2);
  EXPECT_TRUE(Run("be stopped", {"2500"}, limits).Returned(0));
}

TEST_P(RunWorker, StackGrowsFarBeyondTheUsual) {
  NEEDS_STACK_LIMITS();
  EXPECT_TRUE(Run("use the stack").Returned(1));
}

TEST_P(RunWorker, MemoryBeyondTheLimitIsRefused) {
  NEEDS_MEMORY_LIMITS();
  WorkerLimits limits;
  limits.addressSpace = std::uint64_t{64} << 20;
  EXPECT_TRUE(Run("reserve memory", {}, limits).Returned(5));
}

TEST_P(RunWorker, MemoryInUseBeyondTheLimitEndsTheWork) {
  WorkerLimits limits;
  limits.residentMemory = std::uint64_t{64} << 20;
  EXPECT_EQ(Run("touch memory", {"256"}, limits).how, How::kMemoryExceeded);
}

TEST_P(RunWorker, WhatTheTaskTellsComesInOrderAndWhole) {
  const std::string large(300'000, 'x');
  EXPECT_EQ(Run("tell", {"one ", "two ", "", "three\n"}).text, "one two three\n");
  const WorkerResult end = Run("tell", {large.substr(0, 100'000), large.substr(100'000, 100'000)});
  EXPECT_EQ(end.text.size(), 200'000U);
}

TEST_P(RunWorker, WorkThatTellsWithoutEndIsEndedInTime) {
  WorkerLimits limits;
  limits.time = std::chrono::milliseconds(50);
  EXPECT_EQ(Run("tell without end", {}, limits).how, How::kTimedOut);
}

TEST_P(RunWorker, DescriptorsThatItDoesNotNeedAreClosed) {
  // As a shell leaves them: not closed on exec.
  const Descriptor needed(open("/dev/null", O_RDONLY));
  const Descriptor other(open("/dev/null", O_RDONLY));
  const WorkerResult end = runWorker(CallTo("tell descriptors", {}, {needed.Number()}));
  EXPECT_EQ(end.text, std::to_string(needed.Number()) + " ");
}

TEST_P(RunWorker, StandardStreamsAreItsOnlyWhereItIsToldSo) {
  testing::internal::CaptureStdout();
  EXPECT_TRUE(Run("print", {"noise"}).Returned(0));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  testing::internal::CaptureStdout();
  WorkerCall call = CallTo("print", {"words"});
  call.hasOutput = true;
  EXPECT_TRUE(runWorker(call).Returned(0));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "words");
}

TEST_P(RunWorker, ADescriptorIsTheSameFileUnderItsNumber) {
  const Descriptor one(open("/dev/null", O_RDONLY));
  const Descriptor other(open("/dev/zero", O_RDONLY));
  // The numbers of what it is given by, whichever they are, must not get in the way.
  for (const int number : {STDIN_FILENO, one.Number(), other.Number()}) {
    const WorkerResult end =
        runWorker(CallTo("tell file", {std::to_string(number)}, {other.Number(), number}));
    EXPECT_EQ(end.text, identityText(number));
  }
}

TEST_P(RunWorker, ProcessorTimeBeyondTheLimitEndsTheWork) {
  WorkerLimits limits;
  limits.processorTime = std::chrono::seconds(1);
  const WorkerResult end = Run("spin", {}, limits);
  EXPECT_EQ(end.how, How::kSignal);
  EXPECT_EQ(end.number, SIGXCPU);
}

TEST_P(RunWorker, TheNextWorkerHasNeitherLimitsNorRulesOfTheLast) {
  NEEDS_MEMORY_LIMITS();
  WorkerLimits limits;
  limits.addressSpace = std::uint64_t{64} << 20;
  ASSERT_TRUE(Run("reserve memory", {}, limits).Returned(5));
  ASSERT_TRUE(Run("confine", {"/", "1", "/"}).Returned(0));
  EXPECT_TRUE(Run("reserve memory").Returned(0));
  EXPECT_TRUE(Run("be stopped", {"1"}).Returned(0));
}

TEST_P(RunWorker, AMissingProgramIsNotStarted) {
  WorkerTemplate other("/no/such/worker");
  WorkerCall call = CallTo("return", {"7"});
  call.program = "/no/such/worker";
  call.from = call.from == nullptr ? nullptr : &other;
  const WorkerResult end = runWorker(call);
  EXPECT_EQ(end.how, How::kNotStarted);
  EXPECT_EQ(end.number, ENOENT);
}

TEST_P(RunWorker, AProgramThatIsNoWorkerIsNotLoaded) {
  WorkerTemplate other("/bin/false");
  WorkerCall call = CallTo("return", {"7"});
  call.program = "/bin/false";
  call.from = call.from == nullptr ? nullptr : &other;
  EXPECT_EQ(runWorker(call).how, How::kNotLoaded);
}

}  // namespace

}  // namespace dxf2d
