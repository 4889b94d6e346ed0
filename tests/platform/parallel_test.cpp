#include "platform/parallel.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace dxf2d {
namespace {

TEST(RunInParallel, EachCallIsMadeOnce) {
  for (const std::size_t threads : {1U, 2U, 5U}) {
    std::vector<std::atomic<int>> calls(1000);
    runInParallel(calls.size(), threads, [&](std::size_t number) { ++calls[number]; });
    for (const std::atomic<int>& count : calls) {
      ASSERT_EQ(count, 1) << threads << " threads";
    }
  }
}

TEST(RunInParallel, NoCallsAreFine) {
  runInParallel(0, 3, [](std::size_t) { FAIL(); });
}

TEST(RunInParallel, ThrowsWhatTheLowestCallThrew) {
  for (int i = 0; i < 100; ++i) {
    try {
      runInParallel(2, 2,
                    [](std::size_t number) { throw std::runtime_error(std::to_string(number)); });
      FAIL();
    } catch (const std::runtime_error& error) {
      // The other call may not have begun.
      EXPECT_TRUE(error.what() == std::string("0") || error.what() == std::string("1"));
    }
  }
  try {
    runInParallel(3, 1,
                  [](std::size_t number) { throw std::runtime_error(std::to_string(number)); });
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "0");
  }
}

TEST(Blocks, CoverAListWithoutGaps) {
  for (const std::size_t size : {0U, 1U, 7U, 1000U}) {
    for (const std::size_t threads : {1U, 2U, 17U}) {
      const Blocks blocks(size, threads);
      std::size_t next = 0;
      for (std::size_t i = 0; i < blocks.Count(); ++i) {
        EXPECT_EQ(blocks[i].begin, next);
        next = blocks[i].end;
      }
      EXPECT_EQ(next, size);
    }
  }
}

TEST(Blocks, OneThreadHasOne) { EXPECT_EQ(Blocks(1000, 1).Count(), 1U); }

TEST(Threading, SmallWorkIsForOneThread) {
  const Threading threading{4, 100};
  EXPECT_EQ(threading.For(99), 1U);
  EXPECT_EQ(threading.For(100), 4U);
}

}  // namespace
}  // namespace dxf2d
