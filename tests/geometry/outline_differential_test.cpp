// The outlines against the rules written down plainly.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

#include "geometry/outline.h"
#include "tests/geometry/plain_outline.h"
#include "tests/geometry/random_sets.h"

namespace {

enum class SetKind { kFaces, kReversedFaces, kLines };

using Coordinates = std::vector<std::uint64_t>;

Coordinates bitsOf(const std::vector<KtPoint3>& points) {
  Coordinates bits;
  for (const KtPoint3& point : points) {
    for (const double value : {point.Get0(), point.Get1(), point.Get2()}) {
      bits.push_back(std::bit_cast<std::uint64_t>(value));
    }
  }
  return bits;
}

bool fastOutline(IndexedSet& set, SetKind kind) {
  return kind == SetKind::kLines
             ? BuildLineOutline(set.points, set.indices)
             : BuildOutline(set.points, set.indices, kind == SetKind::kReversedFaces, true);
}

bool slowOutline(IndexedSet& set, SetKind kind) {
  return kind == SetKind::kLines
             ? plainLineOutline(set.points, set.indices)
             : plainOutline(set.points, set.indices, kind == SetKind::kReversedFaces, true);
}

// Whether the two agree on `set`; `drawn` counts the sets that have an outline.
testing::AssertionResult agree(const IndexedSet& set, int& drawn) {
  for (const SetKind kind : {SetKind::kFaces, SetKind::kReversedFaces, SetKind::kLines}) {
    IndexedSet fast = set;
    IndexedSet slow = set;
    const bool isDrawn = fastOutline(fast, kind);
    const bool isDrawnPlainly = slowOutline(slow, kind);
    if (isDrawn != isDrawnPlainly) {
      return testing::AssertionFailure()
             << "drawn: " << isDrawn << ", kind " << static_cast<int>(kind) << ", of " << set;
    }
    if (isDrawn && (bitsOf(fast.points) != bitsOf(slow.points) || fast.indices != slow.indices)) {
      return testing::AssertionFailure() << "kind " << static_cast<int>(kind) << "\n got " << fast
                                         << "\nwant " << slow << "\n  of " << set;
    }
    drawn += isDrawn ? 1 : 0;
  }
  return testing::AssertionSuccess();
}

}  // namespace

TEST(OutlineAgainstPlainRules, HostileSets) {
  Random random(1);
  int drawn = 0;
  constexpr int kSets = 60000;
  for (int i = 0; i < kSets; ++i) {
    ASSERT_TRUE(agree(hostileSet(random), drawn)) << "set " << i;
  }
  // Both answers are well represented.
  EXPECT_GT(drawn, kSets / 2);
  EXPECT_LT(drawn, 3 * kSets - kSets / 10);
}

TEST(OutlineAgainstPlainRules, TriangleSoups) {
  Random random(2);
  int drawn = 0;
  for (int i = 0; i < 4000; ++i) {
    ASSERT_TRUE(agree(triangleSoup(random, 2 + below(random, 3), 1 + below(random, 30)), drawn))
        << "set " << i;
  }
  EXPECT_GT(drawn, 4000);
}

TEST(OutlineAgainstPlainRules, FoldsAtTheLimitsOfAngleAndTolerance) {
  Random random(3);
  int drawn = 0;
  for (int i = 0; i < 20000; ++i) {
    ASSERT_TRUE(agree(foldsNearLimits(random), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 20000);
}

TEST(OutlineAgainstPlainRules, BoxesThatTouchAndOverlap) {
  Random random(4);
  int drawn = 0;
  for (int i = 0; i < 1500; ++i) {
    ASSERT_TRUE(agree(boxes(random, 1 + below(random, 8), i % 2 == 0), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 1500);
}

TEST(OutlineAgainstPlainRules, Tetrahedra) {
  Random random(5);
  int drawn = 0;
  for (int i = 0; i < 3000; ++i) {
    ASSERT_TRUE(agree(tetrahedra(random, 1 + below(random, 10)), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 3000);
}

TEST(OutlineAgainstPlainRules, Spheres) {
  Random random(6);
  int drawn = 0;
  for (int rings = 3; rings < 40; ++rings) {
    ASSERT_TRUE(agree(sphere(random, rings), drawn)) << rings << " rings";
  }
  EXPECT_GT(drawn, 30);
}

TEST(OutlineAgainstPlainRules, Terrains) {
  Random random(7);
  int drawn = 0;
  for (int size = 2; size < 36; ++size) {
    ASSERT_TRUE(agree(terrain(random, size), drawn)) << size << " points a side";
  }
  EXPECT_GT(drawn, 30);
}

TEST(OutlineAgainstPlainRules, LargeRandomMeshes) {
  Random random(8);
  int drawn = 0;
  for (const std::uint64_t gridSize : {4U, 8U, 12U, 40U}) {
    ASSERT_TRUE(agree(triangleSoup(random, gridSize, 2000), drawn)) << "grid of " << gridSize;
  }
  EXPECT_EQ(drawn, 12);
}

// What one call leaves in the memory that is reused must not show in the next.
TEST(OutlineAgainstPlainRules, SmallSetsRightAfterHugeOnes) {
  Random random(9);
  int drawn = 0;
  for (int i = 0; i < 3; ++i) {
    IndexedSet huge = terrain(random, 700);
    ASSERT_TRUE(BuildOutline(huge.points, huge.indices, false, true));
    for (int k = 0; k < 200; ++k) {
      ASSERT_TRUE(agree(hostileSet(random), drawn)) << "set " << k;
    }
  }
  EXPECT_GT(drawn, 0);
}
