#include "geometry/outline/csr_adjacency.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tests/geometry/outline/random_sets.h"

namespace dxf2d {

namespace {

using Triple = std::array<std::uint32_t, 3>;
using Pair = std::pair<std::uint32_t, std::uint32_t>;
using TagsOfPairs = std::vector<std::pair<Pair, std::vector<std::uint32_t>>>;

TagsOfPairs grouped(CsrAdjacency& rows, std::size_t rowCount, const std::vector<Triple>& triples,
                    std::size_t threads = 1) {
  rows.Build(rowCount, threads, [&](Block, auto visit) {
    for (const auto& [first, second, tag] : triples) {
      visit(first, second, tag);
    }
  });
  TagsOfPairs result;
  rows.ForEachPair({0, rows.RowCount()},
                   [&](std::uint32_t first, std::uint32_t second, auto entries) {
                     std::vector<std::uint32_t> tags;
                     for (const std::uint64_t entry : entries) {
                       tags.push_back(tagOf(entry));
                     }
                     result.push_back({{first, second}, tags});
                   });
  return result;
}

TagsOfPairs groupedByMap(const std::vector<Triple>& triples) {
  std::map<Pair, std::set<std::uint32_t>> tags;
  for (const auto& [first, second, tag] : triples) {
    tags[{first, second}].insert(tag);
  }
  TagsOfPairs result;
  for (const auto& [pair, all] : tags) {
    result.push_back({pair, {all.begin(), all.end()}});
  }
  return result;
}

}  // namespace

TEST(CsrAdjacency, PairsComeInOrderWithTheirTags) {
  CsrAdjacency rows;
  EXPECT_EQ(grouped(rows, 3, {{2, 7, 1}, {0, 9, 5}, {2, 7, 0}, {0, 3, 4}}),
            (TagsOfPairs{{{0, 3}, {4}}, {{0, 9}, {5}}, {{2, 7}, {0, 1}}}));
}

TEST(CsrAdjacency, TagsOfAPairComeOnce) {
  CsrAdjacency rows;
  EXPECT_EQ(grouped(rows, 1, {{0, 1, 5}, {0, 1, 5}, {0, 1, 2}}), (TagsOfPairs{{{0, 1}, {2, 5}}}));
}

TEST(CsrAdjacency, EmptyHasNoPairs) {
  CsrAdjacency rows;
  EXPECT_TRUE(grouped(rows, 0, {}).empty());
  EXPECT_TRUE(grouped(rows, 5, {}).empty());
}

TEST(CsrAdjacency, LargestNumbersFit) {
  constexpr std::uint32_t kMax = 0xffffffff;
  CsrAdjacency rows;
  EXPECT_EQ(grouped(rows, 1, {{0, kMax, kMax}, {0, 0, 0}}),
            (TagsOfPairs{{{0, 0}, {0}}, {{0, kMax}, {kMax}}}));
}

TEST(CsrAdjacency, GroupsAsAMapDoes) {
  Random random(1);
  CsrAdjacency rows;
  for (int i = 0; i < 2000; ++i) {
    const std::uint64_t rowCount = 1 + below(random, 8);
    std::vector<Triple> triples(below(random, 200));
    for (auto& [first, second, tag] : triples) {
      first = static_cast<std::uint32_t>(below(random, rowCount));
      second = static_cast<std::uint32_t>(below(random, 20));
      tag = static_cast<std::uint32_t>(below(random, 50));
    }
    ASSERT_EQ(grouped(rows, rowCount, triples), groupedByMap(triples)) << "round " << i;
  }
}

#ifndef NDEBUG
TEST(CsrAdjacencyDeathTest, AssertsThatFirstNumbersAreRows) {
  CsrAdjacency rows;
  EXPECT_DEATH(grouped(rows, 2, {{2, 0, 0}}), "rowCount");
}
#endif

}  // namespace dxf2d
