#include "platform/large_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

namespace {

using dxf2d::adviseHugePages;
using dxf2d::appendLarge;
using dxf2d::kLargeBytes;
using dxf2d::LargeAllocator;
using dxf2d::reserveLarge;

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

TEST(ReserveLarge, KeepsWhatTheListHolds) {
  std::vector<int> numbers(1000);
  std::iota(numbers.begin(), numbers.end(), 0);
  const std::vector<int> before = numbers;
  constexpr std::size_t kRoom = 2 * kLargeBytes / sizeof(int);
  reserveLarge(numbers, kRoom);
  EXPECT_EQ(numbers, before);
  EXPECT_GE(numbers.capacity(), kRoom);
}

TEST(ReserveLarge, LeavesAListThatHasTheRoomWhereItIs) {
  std::vector<int> numbers(1000);
  const int* const place = numbers.data();
  reserveLarge(numbers, 1000);
  reserveLarge(numbers, 1);
  EXPECT_EQ(numbers.data(), place);
}

TEST(AdviseHugePages, AcceptsMemoryThatIsNotAWholePage) {
  std::vector<char> bytes(100);
  adviseHugePages(bytes.data() + 1, 98);
  adviseHugePages(bytes.data(), 0);
  EXPECT_EQ(bytes, std::vector<char>(100));
}

}  // namespace
