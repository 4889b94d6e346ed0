#include "app/process/worker_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/cli/own_program.h"
#include "app/process/worker_ends.h"
#include "platform/windows_api.h"

namespace dxf2d {
namespace {

using How = WorkerResult::How;

WorkerResult run(const std::string& task, const std::vector<std::string>& words = {},
                 const WorkerLimits& limits = {}) {
  WorkerCall call{task, words};
  call.program = (ownProgram().parent_path() / "test_worker.exe").string();
  return runWorker(call, limits);
}

std::string crashOf(const std::string& task) {
  const WorkerResult end = run(task);
  return end.how == How::kSignal ? crashName(end.number) : "no crash";
}

TEST(RunWorker, GivesWordsAsTheyAreAndTakesWhatTheTaskTells) {
  const std::vector<std::string> words{"",
                                       "a b",
                                       "\"",
                                       "\\",
                                       "\\\"",
                                       "a\\\\\" b\\",
                                       "C:\\Program Files\\",
                                       "*",
                                       "%TEMP%",
                                       "S\xC3\xBC"
                                       "d \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x8F\xA0",
                                       "'"};
  std::string expected;
  for (const std::string& word : words) {
    expected += word + "\n";
  }
  const WorkerResult end = run("echo", words);
  EXPECT_TRUE(end.Returned(0));
  EXPECT_EQ(end.text, expected);
  EXPECT_EQ(end.notes.size(), 1U);
  EXPECT_GT(end.peakMemory, 0U);
}

TEST(RunWorker, TakesMoreThanAPipeHolds) {
  const WorkerResult end = run("tell-much");
  EXPECT_TRUE(end.Returned(3));
  EXPECT_EQ(end.text.size(), std::size_t{8} << 20U);
}

TEST(RunWorker, TellsCrashesApart) {
  EXPECT_EQ(crashOf("read-null"), "access violation");
  EXPECT_EQ(crashOf("overflow"), "stack overflow");
  EXPECT_EQ(crashOf("abort"), "aborted");
  EXPECT_EQ(crashOf("throw-in-noexcept"), "aborted");
}

TEST(RunWorker, TellsAnEarlyExit) {
  const WorkerResult end = run("exit", {"7"});
  EXPECT_EQ(end.how, How::kExited);
  EXPECT_EQ(end.number, 7);
}

TEST(RunWorker, ReportsExceptionsOfTheTask) {
  EXPECT_TRUE(run("throw").Returned(1));
  EXPECT_TRUE(run("throw-bad-alloc").isMemoryRefused);
}

TEST(RunWorker, EndsAWorkerThatTakesTooMuchMemory) {
  WorkerLimits limits;
  limits.addressSpace = std::uint64_t{128} << 20U;
  limits.residentMemory = limits.addressSpace;
  const WorkerResult end = run("take-memory", {}, limits);
  // The job refuses the memory, or this process sees that it is taken, as under Wine.
  EXPECT_TRUE(end.how == How::kMemoryExceeded || end.isMemoryRefused);
  EXPECT_GT(end.peakMemory, std::uint64_t{64} << 20U);
}

TEST(RunWorker, EndsAWorkerThatTakesTooMuchProcessorTime) {
  WorkerLimits limits;
  limits.processorTime = std::chrono::seconds(1);
  EXPECT_EQ(run("burn", {}, limits).how, How::kTimedOut);
}

TEST(RunWorker, EndsAWorkerThatDoesNothing) {
  WorkerLimits limits;
  limits.time = std::chrono::milliseconds(300);
  EXPECT_EQ(run("wait", {}, limits).how, How::kTimedOut);
}

TEST(RunWorker, TellsThatTheProgramIsMissing) {
  WorkerCall call{"echo", {}};
  call.program = (ownProgram().parent_path() / "missing.exe").string();
  const WorkerResult end = runWorker(call);
  EXPECT_EQ(end.how, How::kNotStarted);
  EXPECT_TRUE(isProgramAbsent(end.number));
}

TEST(RunWorker, TellsThatTheProgramEndedBeforeItsTask) {
  EXPECT_EQ(run("no such task").how, How::kNotLoaded);
}

}  // namespace
}  // namespace dxf2d
