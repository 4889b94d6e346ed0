#include "app/limited_work.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>

#include "app/exit_code.h"

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

void refuseMemory() { throw std::bad_alloc(); }
void failOtherwise() { throw std::runtime_error("otherwise"); }

TEST(LimitedWork, MemoryRefusedWhereNothingMayBeThrownIsToldFromOtherFaults) {
  const Ending end = endOf([]() noexcept {
    refuseMemory();
    return 0;
  });
  EXPECT_EQ(end.code, kExitLimit);
  EXPECT_NE(end.error.find("--max-memory"), std::string::npos) << end.error;
}

TEST(LimitedWork, WorkThatIsTerminatedHasNoLastWords) {
  const Ending end = endOf([]() noexcept {
    failOtherwise();
    return 0;
  });
  EXPECT_EQ(end.code, kExitInput);
  EXPECT_EQ(end.error.rfind("dxf2d: cannot draw 'house.obj': it brings its reader down", 0), 0u)
      << end.error;
}

}  // namespace
