#include "app/process/worker_template.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/process/pipe.h"
#include "app/process/termination_signals.h"
#include "app/process/worker_process.h"
#include "tests/support/sanitizers.h"

namespace dxf2d {

namespace {

using How = WorkerResult::How;

WorkerCall callFrom(WorkerTemplate& workers, const char* task,
                    std::vector<std::string> words = {}) {
  WorkerCall call{task, std::move(words), {}, false, TEST_WORKER};
  call.from = &workers;
  return call;
}

// A call that waits in a stage, in which `meanwhile` is done.
WorkerCall waitingCall(WorkerTemplate& workers, const Pipe& pipe, void (*meanwhile)(pid_t)) {
  WorkerCall call = callFrom(workers, "wait for a byte", {std::to_string(pipe.reader.Number())});
  call.descriptors = {pipe.reader.Number()};
  call.onStage = [&workers, &pipe, meanwhile](std::string_view) {
    meanwhile(static_cast<pid_t>(workers.Process()));
    EXPECT_EQ(write(pipe.writer.Number(), "\7", 1), 1);
  };
  return call;
}

void killNow(pid_t process) { EXPECT_EQ(kill(process, SIGKILL), 0); }

TEST(WorkerTemplate, IsStartedOnceForManyWorkers) {
  WorkerTemplate workers(TEST_WORKER);
  EXPECT_EQ(workers.Process(), 0);
  ASSERT_TRUE(runWorker(callFrom(workers, "return", {"7"})).Returned(7));
  const long process = workers.Process();
  EXPECT_GT(process, 0);
  EXPECT_TRUE(runWorker(callFrom(workers, "return", {"8"})).Returned(8));
  EXPECT_EQ(workers.Process(), process);
}

TEST(WorkerTemplate, AWorkerIsAChildOfThisProcess) {
  WorkerTemplate workers(TEST_WORKER);
  const WorkerResult end = runWorker(callFrom(workers, "tell parent"));
  EXPECT_EQ(end.text, std::to_string(getpid()));
}

TEST(WorkerTemplate, ACrashLeavesItAndOtherWorkers) {
  WorkerTemplate workers(TEST_WORKER);
  ASSERT_TRUE(runWorker(callFrom(workers, "return", {"7"})).Returned(7));
  const long process = workers.Process();
  const Pipe pipe = openPipe();
  // A second one at a time; a template is its thread's.
  std::thread other([] {
    WorkerTemplate others(TEST_WORKER);
    EXPECT_EQ(runWorker(callFrom(others, "raise", {std::to_string(SIGABRT)})).number, SIGABRT);
  });
  EXPECT_TRUE(runWorker(waitingCall(workers, pipe, [](pid_t) {})).Returned(7));
  other.join();
  const WorkerResult crash = runWorker(callFrom(workers, "raise", {std::to_string(SIGABRT)}));
  EXPECT_EQ(crash.how, How::kSignal);
  EXPECT_EQ(crash.number, SIGABRT);
  EXPECT_TRUE(runWorker(callFrom(workers, "return", {"8"})).Returned(8));
  EXPECT_EQ(workers.Process(), process);
}

TEST(WorkerTemplate, IsStartedAgainWhenItWasKilled) {
  WorkerTemplate workers(TEST_WORKER);
  ASSERT_TRUE(runWorker(callFrom(workers, "return", {"7"})).Returned(7));
  const long process = workers.Process();
  killNow(static_cast<pid_t>(process));
  EXPECT_TRUE(runWorker(callFrom(workers, "return", {"8"})).Returned(8));
  EXPECT_TRUE(runWorker(callFrom(workers, "return", {"9"})).Returned(9));
  EXPECT_NE(workers.Process(), process);
}

TEST(WorkerTemplate, AWorkerGoesOnWhenItsTemplateIsKilled) {
  WorkerTemplate workers(TEST_WORKER);
  const Pipe pipe = openPipe();
  EXPECT_TRUE(runWorker(waitingCall(workers, pipe, &killNow)).Returned(7));
}

TEST(WorkerTemplate, ATerminationSignalEndsTheWaitForOneThatIsStopped) {
  EXPECT_EXIT(
      {
        const ScopedSignalBlock deferred;
        WorkerTemplate workers(TEST_WORKER);
        runWorker(callFrom(workers, "return", {"7"}));
        kill(static_cast<pid_t>(workers.Process()), SIGSTOP);
        raise(SIGTERM);
        const WorkerResult end = runWorker(callFrom(workers, "wait"));
        std::fputs(end.how == How::kTerminated ? "cleaned up" : "not asked", stderr);
      },
      testing::KilledBySignal(SIGTERM), "cleaned up");
}

TEST(WorkerTemplate, PeakMemoryIsThatOfTheWorkerAlone) {
  NEEDS_MEMORY_LIMITS();
  const std::vector<char> much(std::size_t{256} << 20, 'x');
  WorkerTemplate workers(TEST_WORKER);
  const WorkerResult small = runWorker(callFrom(workers, "return", {"7"}));
  EXPECT_GT(small.peakMemory, 0U);
  EXPECT_LT(small.peakMemory, std::uint64_t{64} << 20);
  WorkerLimits limits;
  limits.residentMemory = std::uint64_t{64} << 20;
  const WorkerResult large = runWorker(callFrom(workers, "touch memory", {"128"}), limits);
  EXPECT_GT(large.peakMemory, std::uint64_t{64} << 20);
  EXPECT_LT(runWorker(callFrom(workers, "return", {"7"})).peakMemory, std::uint64_t{64} << 20);
  EXPECT_EQ(much.back(), 'x');
}

TEST(WorkerTemplate, EndsWithItsProcessAndSoDoItsWorkers) {
  // Open in the worker and, as whatever else is not closed on exec, in the template's parent.
  Pipe worker = openPipe();
  const Pipe told = openPipe();
  const pid_t parent = fork();
  if (parent == 0) {
    WorkerTemplate workers(TEST_WORKER);
    const Pipe never = openPipe();
    WorkerCall call = callFrom(workers, "wait for a byte", {std::to_string(never.reader.Number())});
    call.descriptors = {never.reader.Number(), worker.writer.Number()};
    call.onStage = [&](std::string_view) {
      const long process = workers.Process();
      static_cast<void>(write(told.writer.Number(), &process, sizeof process) == 0);
    };
    runWorker(call);
    std::_Exit(1);
  }
  long process = 0;
  ASSERT_EQ(read(told.reader.Number(), &process, sizeof process), ssize_t{sizeof process});
  const Descriptor end(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
  ASSERT_TRUE(end.IsOpen());
  killNow(parent);
  ASSERT_EQ(waitpid(parent, nullptr, 0), parent);
  pollfd ended{end.Number(), POLLIN, 0};
  EXPECT_EQ(poll(&ended, 1, 60'000), 1);
  worker.writer.Close();
  char byte = 0;
  EXPECT_EQ(read(worker.reader.Number(), &byte, 1), 0);
}

}  // namespace

}  // namespace dxf2d
