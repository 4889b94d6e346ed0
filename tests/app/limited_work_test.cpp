#include "app/limited_work.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>

#include "app/failure.h"

namespace {

struct Ending {
  int code;
  std::string error;
};

Ending endOf(const std::function<int()>& work) {
  testing::internal::CaptureStderr();
  const int code = LimitedWork("draw", "house.obj", {}).Run(work);
  return {code, testing::internal::GetCapturedStderr()};
}

bool isOneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.size() - 1;
}

void refuseMemory() { throw std::bad_alloc(); }
void failOtherwise() { throw std::runtime_error("otherwise"); }

TEST(LimitedWork, AFailureIsItsSentenceAndItsCode) {
  for (const ExitCode code : {kExitInput, kExitNothingToDraw, kExitLimit, kExitPlugin}) {
    const Ending end = endOf([code]() -> int { throw Failure(code, "it is raining"); });
    EXPECT_EQ(end.code, code);
    EXPECT_EQ(end.error, "dxf2d: it is raining\n");
  }
}

TEST(LimitedWork, AnyOtherExceptionIsAFaultOfOurs) {
  const Ending end = endOf([]() -> int { throw std::out_of_range("beyond"); });
  EXPECT_EQ(end.code, kExitInternal);
  EXPECT_EQ(end.error, "dxf2d: beyond; please report this\n");
}

TEST(LimitedWork, MemoryRefusedIsALimit) {
  const Ending end = endOf([] {
    refuseMemory();
    return 0;
  });
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("--max-memory"), std::string::npos) << end.error;
  EXPECT_TRUE(isOneLine(end.error)) << end.error;
}

TEST(LimitedWork, MemoryRefusedWhereNothingMayBeThrownIsToldFromOtherFaults) {
  const Ending end = endOf([]() noexcept {
    refuseMemory();
    return 0;
  });
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("--max-memory"), std::string::npos) << end.error;
}

TEST(LimitedWork, ProcessorTimeThatTheSystemLimitsIsALimit) {
  const Ending end = endOf([] { return raise(SIGXCPU); });
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("ulimit -t"), std::string::npos) << end.error;
  EXPECT_TRUE(isOneLine(end.error)) << end.error;
}

TEST(LimitedWork, ProcessorTimeIsALimitWhereTheSystemWouldKill) {
  const auto runEndlessly = [] {
    const rlimit limit{2, 2};
    setrlimit(RLIMIT_CPU, &limit);
    volatile bool goesOn = true;
    std::_Exit(LimitedWork("draw", "house.obj", {}).Run([&] {
      while (goesOn) continue;
      return 0;
    }));
  };
  EXPECT_EXIT(runEndlessly(), testing::ExitedWithCode(kExitLimit), "ulimit -t");
}

TEST(LimitedWork, WorkThatIsTerminatedHasNoLastWords) {
  // NOLINTNEXTLINE(bugprone-exception-escape): this is how readers end.
  const Ending end = endOf([]() noexcept {
    failOtherwise();
    return 0;
  });
  EXPECT_EQ(end.code, kExitInput);
  EXPECT_EQ(end.error.rfind("dxf2d: cannot draw 'house.obj': it brings its reader down", 0), 0u)
      << end.error;
}

}  // namespace
