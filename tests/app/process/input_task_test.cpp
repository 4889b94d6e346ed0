#include "app/process/input_task.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "app/cli/exit_code.h"
#include "tests/support/sanitizers.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

struct Ending {
  int code;
  std::string error;
};

int run(const char* task, const std::vector<std::string>& words, const ResourceLimits& limits) {
  std::string text;
  return InputTask("the importer", "house.obj", limits)
      .Run({task, words, {}, false, TEST_WORKER}, text);
}

Ending endOf(const char* task, const std::vector<std::string>& words = {},
             const ResourceLimits& limits = {}) {
  testing::internal::CaptureStderr();
  const int code = run(task, words, limits);
  return {code, testing::internal::GetCapturedStderr()};
}

bool isOneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
}

TEST(InputTask, AFailureIsItsSentenceAndItsCode) {
  for (const ExitCode code : {kExitInput, kExitNothingToDraw, kExitLimit, kExitPlugin}) {
    const Ending end = endOf("fail", {std::to_string(code)});
    EXPECT_EQ(end.code, code);
    EXPECT_EQ(end.error, "dxf2d: house.obj: it is raining; wait\n");
  }
}

TEST(InputTask, AnyOtherExceptionIsAFaultOfOurs) {
  const Ending end = endOf("throw");
  EXPECT_EQ(end.code, kExitInternal);
  EXPECT_EQ(end.error, "dxf2d: internal error: otherwise; please report this\n");
}

void expectMemoryLimit(const Ending& end) {
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("--max-memory"), std::string::npos) << end.error;
  EXPECT_TRUE(isOneLine(end.error)) << end.error;
}

TEST(InputTask, MemoryRefusedIsALimit) { expectMemoryLimit(endOf("refuse memory")); }

TEST(InputTask, MemoryRefusedWhereNothingMayBeThrownIsToldFromOtherFaults) {
  expectMemoryLimit(endOf("refuse memory where nothing may be thrown"));
}

TEST(InputTask, ProcessorTimeIsLimited) {
  ResourceLimits limits;
  limits.time = std::chrono::seconds(1);
  const Ending end = endOf("spin", {}, limits);
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("--max-time"), std::string::npos) << end.error;
  EXPECT_TRUE(isOneLine(end.error)) << end.error;
}

TEST(InputTask, ASignalFromOutsideIsNotTheFaultOfTheModel) {
  for (const int signal : {SIGTERM, SIGKILL, SIGHUP}) {
    const Ending end = endOf("raise", {std::to_string(signal)});
    EXPECT_EQ(end.code, kExitLimit);
    EXPECT_NE(end.error.find(strsignal(signal)), std::string::npos) << end.error;
    EXPECT_TRUE(isOneLine(end.error)) << end.error;
  }
}

TEST(InputTask, ARefusedAllocationThatAReaderCallsAMalformedModelIsALimit) {
  expectMemoryLimit(endOf("hide a refusal", {"fail"}));
}

TEST(InputTask, ACrashAfterARefusedAllocationIsALimit) {
  expectMemoryLimit(endOf("hide a refusal", {"crash"}));
}

TEST(InputTask, ARefusedAllocationThatAReaderGoesOnWithoutIsALimit) {
  expectMemoryLimit(endOf("hide a refusal", {"return"}));
}

ResourceLimits limitedTo(std::uint64_t mebibytes) {
  ResourceLimits limits;
  limits.memory = mebibytes << 20;
  return limits;
}

TEST(InputTask, MemoryRefusedToALibraryInCIsALimit) {
  NEEDS_MEMORY_LIMITS();
  expectMemoryLimit(endOf("misread a refusal", {}, limitedTo(64)));
}

TEST(InputTask, AddressSpaceOfThreadsIsGrantedBesideTheLimit) {
  NEEDS_MEMORY_LIMITS();
  // Sixteen more: room for the two gibibytes that the task asks for, and does not use.
  WorkerCall call{"misread a refusal", {}, {}, false, TEST_WORKER};
  call.threads = 17;
  std::string text;
  EXPECT_EQ(InputTask("the importer", "house.obj", limitedTo(64)).Run(call, text), kExitDone);
}

TEST(InputTask, ASizeThatNoLimitAllowsIsAFaultOfTheFile) {
  NEEDS_MEMORY_LIMITS();
  EXPECT_EQ(endOf("misread a size", {}, limitedTo(64)).code, kExitInput);
}

TEST(InputTask, AStackThatCannotGrowIsALimit) {
  NEEDS_MEMORY_LIMITS();
  expectMemoryLimit(endOf("use the stack", {}, limitedTo(16)));
}

TEST(InputTask, EndlessRecursionIsACrash) {
  NEEDS_STACK_LIMITS();
  const Ending end = endOf("recurse without end", {}, limitedTo(1024));
  EXPECT_EQ(end.code, kExitInput);
  EXPECT_NE(end.error.find("crashes"), std::string::npos) << end.error;
}

// What a task says whose worker is the program `worker`, which does not start.
std::string saidWithout(const std::string& worker) {
  std::string text;
  testing::internal::CaptureStderr();
  EXPECT_EQ(
      InputTask("the importer", "house.obj", {}).Run({"return", {"7"}, {}, false, worker}, text),
      kExitInternal);
  return testing::internal::GetCapturedStderr();
}

TEST(InputTask, AMissingWorkerIsNamed) {
  const std::string said = saidWithout("/no/such/worker");
  EXPECT_NE(said.find("is missing; install"), std::string::npos) << said;
}

TEST(InputTask, AWorkerThatIsNoProgramIsNoLackOfRoom) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "worker", "not a program");
  std::string said = saidWithout(directory / "worker");
  EXPECT_NE(said.find("cannot be started (Permission denied); install"), std::string::npos) << said;
  std::filesystem::permissions(directory / "worker", std::filesystem::perms::owner_all);
  said = saidWithout(directory / "worker");
  EXPECT_NE(said.find("cannot be started (Exec format error); install"), std::string::npos) << said;
}

TEST(InputTask, ProcessorTimeIsALimitWhereTheSystemWouldKill) {
  const auto runEndlessly = [] {
    const rlimit limit{2, 2};
    setrlimit(RLIMIT_CPU, &limit);
    std::_Exit(run("spin", {}, {}));
  };
  EXPECT_EXIT(runEndlessly(), testing::ExitedWithCode(kExitLimit), "ulimit -t");
}

TEST(InputTask, TerminatedWorkPrintsNothing) {
  const Ending end = endOf("fail where nothing may be thrown");
  EXPECT_EQ(end.code, kExitInput);
  EXPECT_EQ(end.error.rfind("dxf2d: house.obj: crashes the importer (", 0), 0u) << end.error;
}

}  // namespace

}  // namespace dxf2d
