#include "geometry/outline/point_index.h"

#include <gtest/gtest.h>

#include <vector>

#include "ktscene/kt_point3.h"

namespace dxf2d {

namespace {

// Inserts the points one by one and returns the number that each got.
std::vector<std::uint32_t> numbersOf(const std::vector<KtPoint3>& points) {
  PointIndex table;
  table.Reset(points.size());
  std::vector<std::uint32_t> numbers;
  for (std::uint32_t i = 0; i < points.size(); ++i) {
    const KtPoint3& point = points[i];
    const std::uint64_t hash = PointIndex::Hash(point.Get0(), point.Get1(), point.Get2());
    numbers.push_back(
        table.FindOrInsert(hash, i, [&](std::uint32_t other) { return points[other] == point; }));
  }
  return numbers;
}

}  // namespace

TEST(PointIndex, FindsTheFirstOfEqualPoints) {
  EXPECT_EQ(numbersOf({{1, 2, 3}, {4, 5, 6}, {1, 2, 3}, {0.0, 0, 0}, {-0.0, 0, 0}}),
            (std::vector<std::uint32_t>{0, 1, 0, 3, 3}));
}

TEST(PointIndex, InsertsOnlyWhereItMay) {
  PointIndex table;
  table.Reset(2);
  const auto isSame = [](std::uint32_t) { return true; };
  EXPECT_EQ(table.FindOrInsertIf(7, 0, isSame, [] { return false; }), PointIndex::kNone);
  EXPECT_EQ(table.FindOrInsertIf(7, 1, isSame, [] { return true; }), 1U);
  EXPECT_EQ(table.FindOrInsertIf(7, 0, isSame, [] { return false; }), 1U);
}

TEST(PointIndex, ResetForgetsEveryPoint) {
  PointIndex table;
  const auto isSame = [](std::uint32_t) { return true; };
  table.Reset(1);
  table.FindOrInsert(7, 0, isSame);
  table.Reset(2);
  EXPECT_EQ(table.FindOrInsert(7, 1, isSame), 1U);
}

TEST(PointIndex, FindsWithoutInserting) {
  PointIndex table;
  table.Reset(2);
  const auto isSame = [](std::uint32_t) { return true; };
  EXPECT_EQ(table.Find(7, isSame), PointIndex::kNone);
  table.FindOrInsert(7, 1, isSame);
  EXPECT_EQ(table.Find(7, isSame), 1U);
  EXPECT_EQ(table.Find(7, [](std::uint32_t) { return false; }), PointIndex::kNone);
}

TEST(PointIndex, GrowingKeepsWhatIsThere) {
  PointIndex table;
  table.Reset(0);
  const auto hashOf = [](std::uint32_t number) { return std::uint64_t{number} * 0x10001; };
  for (std::uint32_t number = 0; number < 1000; ++number) {
    if (table.IsCrowdedBy(number + 1)) {
      table.Grow(number, hashOf);
    }
    table.FindOrInsert(hashOf(number), number, [](std::uint32_t) { return false; });
    EXPECT_FALSE(table.IsCrowdedBy(number));
  }
  for (std::uint32_t number = 0; number < 1000; ++number) {
    EXPECT_EQ(table.Find(hashOf(number), [&](std::uint32_t other) { return other == number; }),
              number);
  }
}

#ifndef NDEBUG
TEST(PointIndexDeathTest, AssertsThatNumbersFitTheTable) {
  PointIndex table;
  table.Reset(1);
  const auto isSame = [](std::uint32_t) { return true; };
  EXPECT_DEATH(table.FindOrInsert(7, 1000, isSame), "slots_.size");
  EXPECT_DEATH(table.FindOrInsert(7, PointIndex::kNone, isSame), "kNone");
}
#endif

}  // namespace dxf2d
