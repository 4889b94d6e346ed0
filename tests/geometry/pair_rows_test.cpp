#include "geometry/pair_rows.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tests/geometry/random_sets.h"

namespace {

using Triple = std::array<std::uint32_t, 3>;
using Pair = std::pair<std::uint32_t, std::uint32_t>;
using TagsOfPairs = std::vector<std::pair<Pair, std::vector<std::uint32_t>>>;

TagsOfPairs grouped(PairRows& rows, std::size_t rowCount, const std::vector<Triple>& triples) {
  rows.Build(rowCount, [&](auto visit) {
    for (const auto& [first, second, tag] : triples) {
      visit(first, second, tag);
    }
  });
  TagsOfPairs result;
  rows.ForEachPair([&](std::uint32_t first, std::uint32_t second, auto entries) {
    std::vector<std::uint32_t> tags;
    for (const std::uint64_t entry : entries) {
      tags.push_back(tagOf(entry));
    }
    result.push_back({{first, second}, tags});
  });
  return result;
}

TagsOfPairs groupedPlainly(const std::vector<Triple>& triples) {
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

TEST(PairRows, PairsComeInOrderWithTheirTags) {
  PairRows rows;
  EXPECT_EQ(grouped(rows, 3, {{2, 7, 1}, {0, 9, 5}, {2, 7, 0}, {0, 3, 4}}),
            (TagsOfPairs{{{0, 3}, {4}}, {{0, 9}, {5}}, {{2, 7}, {0, 1}}}));
}

TEST(PairRows, TagsOfAPairComeOnce) {
  PairRows rows;
  EXPECT_EQ(grouped(rows, 1, {{0, 1, 5}, {0, 1, 5}, {0, 1, 2}}), (TagsOfPairs{{{0, 1}, {2, 5}}}));
}

TEST(PairRows, NoRowsHaveNoPairs) {
  PairRows rows;
  EXPECT_TRUE(grouped(rows, 0, {}).empty());
  EXPECT_TRUE(grouped(rows, 5, {}).empty());
}

TEST(PairRows, LargestNumbersFit) {
  constexpr std::uint32_t kMax = 0xffffffff;
  PairRows rows;
  EXPECT_EQ(grouped(rows, 1, {{0, kMax, kMax}, {0, 0, 0}}),
            (TagsOfPairs{{{0, 0}, {0}}, {{0, kMax}, {kMax}}}));
}

TEST(PairRows, AnswersAsAMapDoes) {
  Random random(1);
  PairRows rows;
  for (int i = 0; i < 2000; ++i) {
    const std::uint64_t rowCount = 1 + below(random, 8);
    std::vector<Triple> triples(below(random, 200));
    for (auto& [first, second, tag] : triples) {
      first = static_cast<std::uint32_t>(below(random, rowCount));
      second = static_cast<std::uint32_t>(below(random, 20));
      tag = static_cast<std::uint32_t>(below(random, 50));
    }
    ASSERT_EQ(grouped(rows, rowCount, triples), groupedPlainly(triples)) << "round " << i;
  }
}
