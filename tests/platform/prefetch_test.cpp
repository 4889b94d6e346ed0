#include "platform/prefetch.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace dxf2d {

namespace {

struct Item {
  std::size_t value;
  std::uint32_t hash;
};

struct CountingTable {
  void Prefetch(std::uint32_t hash) const { prefetched.push_back(hash); }
  mutable std::vector<std::uint32_t> prefetched;
};

Item makeItem(std::size_t i) { return {10 * i, static_cast<std::uint32_t>(i)}; }

}  // namespace

TEST(ForEachPrefetched, VisitsEveryItemInOrderOnceItsHashIsPrefetched) {
  for (const std::size_t count : {0U, 1U, 31U, 32U, 33U, 100U}) {
    const CountingTable table;
    std::size_t visited = 0;
    EXPECT_TRUE(forEachPrefetched(table, count, makeItem, [&](std::size_t i, const Item& item) {
      EXPECT_EQ(i, visited);
      EXPECT_EQ(item.value, 10 * i);
      EXPECT_LT(i, table.prefetched.size());
      ++visited;
      return true;
    }));
    EXPECT_EQ(visited, count);
    EXPECT_EQ(table.prefetched.size(), count);
  }
}

TEST(ForEachPrefetched, StopsWhereVisitReturnsFalse) {
  const CountingTable table;
  std::size_t visited = 0;
  EXPECT_FALSE(forEachPrefetched(table, 100, makeItem,
                                 [&](std::size_t, const Item&) { return ++visited < 40; }));
  EXPECT_EQ(visited, 40U);
}

}  // namespace dxf2d
