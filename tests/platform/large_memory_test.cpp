#include "platform/large_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

namespace {

using Numbers = std::vector<std::uint32_t, LargeAllocator<std::uint32_t>>;

TEST(LargeAllocator, ContainersGrowFromSmallToLargeWithTheirContent) {
  constexpr std::size_t kCount = 3 * kLargeBytes / sizeof(std::uint32_t) + 1;
  Numbers numbers;
  for (std::uint32_t i = 0; i < kCount; ++i) {
    numbers.push_back(i);
  }
  std::vector<std::uint32_t> expected(kCount);
  std::iota(expected.begin(), expected.end(), 0U);
  EXPECT_TRUE(std::equal(numbers.begin(), numbers.end(), expected.begin(), expected.end()));
}

TEST(LargeAllocator, TooMuchIsBadAlloc) {
  LargeAllocator<std::uint32_t> allocator;
  EXPECT_THROW((void)allocator.allocate(std::numeric_limits<std::size_t>::max() / 2),
               std::bad_alloc);
}

}  // namespace
