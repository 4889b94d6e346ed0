// Line sets that are their own outline, against the outline.
#include "geometry/outline/already_chained.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include "tests/geometry/outline/random_sets.h"

namespace dxf2d {

namespace {

struct LineSet {
  std::vector<double> coords;
  std::vector<int> indices;
};

KtMatrix placement() {
  KtMatrix matrix;
  matrix.Rotate(0.0, 0.0, 1.0, 0.25);
  matrix.SetTranslation(3.0, -2.0, 1.0);
  return matrix;
}

bool isChained(const LineSet& set, const KtMatrix& matrix = KtMatrix()) {
  return isAlreadyChained({set.coords, matrix}, set.indices);
}

// Five places in a row.
LineSet fivePoints(std::vector<int> indices) {
  return {{0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0}, std::move(indices)};
}

// Strips that nearly always are as they should be, now and then closed, with an entry or a code
// changed, or with points that meet.
LineSet nearlyGiven(Random& random) {
  const auto oneIn = [&](std::uint64_t count) { return below(random, count) == 0; };
  const bool pointsMeet = oneIn(3);
  LineSet set;
  int next = 0;
  for (std::uint64_t run = 0; run <= below(random, 5); ++run) {
    const int first = next;
    for (std::uint64_t k = 0; k <= 1 + below(random, 6); ++k) {
      set.indices.push_back(next);
      next += oneIn(8) ? 2 : 1;
    }
    if (oneIn(3)) {
      set.indices.push_back(oneIn(8) ? first + 1 : first);
    }
    set.indices.push_back(oneIn(3) ? -1 : oneIn(20) ? -7 : -6);
  }
  if (oneIn(6)) {
    set.indices[below(random, set.indices.size())] =
        static_cast<int>(below(random, static_cast<std::uint64_t>(next) + 3)) - 3;
  }
  const std::uint64_t grid = pointsMeet ? 4 : 1000000;
  for (int i = 0; i < next + (oneIn(20) ? -1 : 0); ++i) {
    for (int axis = 0; axis < 3; ++axis) {
      const double coordinate = static_cast<double>(below(random, grid)) - 1.0;
      set.coords.push_back(coordinate == 0.0 && oneIn(2) ? -0.0 : coordinate);
    }
  }
  if (oneIn(20) && !set.coords.empty()) {
    set.coords[below(random, set.coords.size())] = std::numeric_limits<double>::infinity();
  }
  return set;
}

// What isAlreadyChained promises of a set that it is true of.
testing::AssertionResult isItsOutline(const LineSet& set, const KtMatrix& matrix) {
  const PlacedCoords placed{set.coords, matrix};
  std::vector<KtPoint3> points;
  std::vector<int> chains;
  if (!BuildLineOutline(placed, set.indices, points, chains)) {
    return testing::AssertionFailure() << "nothing is drawn";
  }
  std::vector<int> runs = set.indices;
  std::replace(runs.begin(), runs.end(), -1, -6);
  if (chains != runs || points.size() != placed.Count()) {
    return testing::AssertionFailure() << "other chains";
  }
  for (std::size_t i = 0; i < points.size(); ++i) {
    const KtPoint3 point = placed.At(i);
    if (std::bit_cast<std::uint64_t>(points[i].Get0() + 0.0) !=
            std::bit_cast<std::uint64_t>(point.Get0() + 0.0) ||
        std::bit_cast<std::uint64_t>(points[i].Get1() + 0.0) !=
            std::bit_cast<std::uint64_t>(point.Get1() + 0.0)) {
      return testing::AssertionFailure() << "another point " << i;
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace

TEST(AlreadyChained, StripsInAscendingOrderAre) {
  EXPECT_TRUE(isChained(fivePoints({0, 1, 2, 3, 4, -6})));
  EXPECT_TRUE(isChained(fivePoints({0, 1, -1, 2, 4, -6})));
}

TEST(AlreadyChained, LoopsThatCloseInTheirFirstPointAre) {
  EXPECT_TRUE(isChained(fivePoints({0, 1, 2, 0, -6, 3, 4, -6})));
  EXPECT_TRUE(isChained(fivePoints({1, 2, 4, 1, -1})));
}

TEST(AlreadyChained, LoopsThatCloseElsewhereAreNot) {
  EXPECT_FALSE(isChained(fivePoints({0, 1, 2, 1, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, 0, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, 2, 0, 3, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, 2, 0, 0, -6})));
}

TEST(AlreadyChained, StripsThatMeetOrDescendAreNot) {
  EXPECT_FALSE(isChained(fivePoints({0, 1, -6, 1, 2, -6})));
  EXPECT_FALSE(isChained(fivePoints({2, 3, -6, 0, 1, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 2, 1, -6})));
}

TEST(AlreadyChained, OtherCodesShortRunsAndTrailingEntriesAreNot) {
  EXPECT_FALSE(isChained(fivePoints({0, 1, 2, -7})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, 2, -5})));
  EXPECT_FALSE(isChained(fivePoints({0, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, -6, -6})));
  EXPECT_FALSE(isChained(fivePoints({0, 1, -6, 2, 3})));
  EXPECT_FALSE(isChained(fivePoints({})));
}

TEST(AlreadyChained, EntriesThatNameNoPointAreNot) {
  EXPECT_FALSE(isChained(fivePoints({3, 4, 5, -6})));
  EXPECT_FALSE(isChained({{}, {0, 1, -6}}));
  EXPECT_FALSE(isChained({{0, 0, 0, 1, 0}, {0, 1, -6}}));
}

TEST(AlreadyChained, PointsThatMeetInPlanAreNot) {
  EXPECT_FALSE(isChained({{0, 0, 0, 1, 0, 0, 0, 0, 7}, {0, 1, 2, -6}}));
  EXPECT_FALSE(isChained({{0, 0, 0, 1, 0, 0, -0.0, 0, 0}, {0, 1, 2, -6}}));
  EXPECT_FALSE(isChained({{0, 0, 0, 1, 0, 0, 1, 0, 0}, {0, 1, -6}}));
}

TEST(AlreadyChained, PointsThatAreNotFiniteAreNot) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(isChained({{0, 0, 0, 1, 0, kInfinity}, {0, 1, -6}}));
  EXPECT_FALSE(isChained({{0, 0, 0, std::numeric_limits<double>::quiet_NaN(), 0, 0}, {0, 1, -6}}));
  KtMatrix large;
  large.SetTranslation(0.0, 0.0, std::numeric_limits<double>::max());
  const double high = std::numeric_limits<double>::max();
  EXPECT_FALSE(isChained({{0, 0, high, 1, 0, 0}, {0, 1, -6}}, large));
}

TEST(AlreadyChained, LargeSetIsToo) {
  LineSet set;
  constexpr int kPoints = 300000;
  for (int i = 0; i < kPoints; ++i) {
    set.coords.insert(set.coords.end(), {i * 0.5, i % 7 * 0.25, 1.0});
    set.indices.push_back(i);
  }
  set.indices.push_back(-6);
  EXPECT_TRUE(isChained(set, placement()));
  const std::size_t last = set.coords.size() - 3;
  set.coords[last] = set.coords[0];
  set.coords[last + 1] = set.coords[1];
  EXPECT_FALSE(isChained(set, placement()));
}

TEST(AlreadyChainedAgainstOutline, NearlyChainedSets) {
  Random random(1);
  constexpr int kSets = 60000;
  int given = 0;
  for (int i = 0; i < kSets; ++i) {
    const LineSet set = nearlyGiven(random);
    const KtMatrix matrix = i % 2 == 0 ? KtMatrix() : placement();
    if (isChained(set, matrix)) {
      ASSERT_TRUE(isItsOutline(set, matrix)) << "set " << i;
      ++given;
    }
  }
  // Both results are well represented.
  EXPECT_GT(given, kSets / 5);
  EXPECT_LT(given, kSets - kSets / 5);
}

TEST(AlreadyChainedAgainstOutline, HostileSets) {
  Random random(2);
  int given = 0;
  for (int i = 0; i < 200000; ++i) {
    const IndexedSet hostile = hostileSet(random);
    LineSet set{{}, hostile.indices};
    for (const KtPoint3& point : hostile.points) {
      set.coords.insert(set.coords.end(), {point.Get0(), point.Get1(), point.Get2()});
    }
    if (isChained(set)) {
      ASSERT_TRUE(isItsOutline(set, KtMatrix())) << "set " << i << ": " << hostile;
      ++given;
    }
  }
  EXPECT_GT(given, 10);
}

}  // namespace dxf2d
