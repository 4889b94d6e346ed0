// The outlines against their reference implementation.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

#include "geometry/outline/outline.h"
#include "tests/geometry/outline/random_sets.h"
#include "tests/geometry/outline/reference_outline.h"

namespace dxf2d {

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

// As sets come from hosts: coordinates in a list.
bool outlineWithThreads(IndexedSet& set, SetKind kind, std::size_t threads) {
  std::vector<double> coords;
  for (const KtPoint3& point : set.points) {
    coords.insert(coords.end(), {point.Get0(), point.Get1(), point.Get2()});
  }
  const KtMatrix transform;
  const PlacedCoords placed{coords, transform};
  const Threading threading{threads, 0};
  std::vector<int> outline;
  const bool isDrawn = kind == SetKind::kLines
                           ? BuildLineOutline(placed, set.indices, set.points, outline, threading)
                           : BuildOutline(placed, set.indices, set.points, outline,
                                          kind == SetKind::kReversedFaces, true, threading);
  set.indices = outline;
  return isDrawn;
}

bool outlineByReference(IndexedSet& set, SetKind kind) {
  return kind == SetKind::kLines
             ? referenceLineOutline(set.points, set.indices)
             : referenceOutline(set.points, set.indices, kind == SetKind::kReversedFaces, true);
}

// Whether the two agree on `set`; `drawn` counts the sets that have an outline.
testing::AssertionResult agree(const IndexedSet& set, int& drawn) {
  for (const SetKind kind : {SetKind::kFaces, SetKind::kReversedFaces, SetKind::kLines}) {
    IndexedSet fast = set;
    IndexedSet expected = set;
    const bool isDrawn = fastOutline(fast, kind);
    const bool isDrawnByReference = outlineByReference(expected, kind);
    if (isDrawn != isDrawnByReference) {
      return testing::AssertionFailure()
             << "drawn: " << isDrawn << ", kind " << static_cast<int>(kind) << ", of " << set;
    }
    if (isDrawn &&
        (bitsOf(fast.points) != bitsOf(expected.points) || fast.indices != expected.indices)) {
      return testing::AssertionFailure() << "kind " << static_cast<int>(kind) << "\n got " << fast
                                         << "\nwant " << expected << "\n  of " << set;
    }
    // Where -0 comes first, 0 is kept.
    IndexedSet placed = set;
    if (outlineWithThreads(placed, kind, 1) != isDrawn ||
        (isDrawn && (placed.points != expected.points || placed.indices != expected.indices))) {
      return testing::AssertionFailure() << "kind " << static_cast<int>(kind) << "\n got " << placed
                                         << "\nwant " << expected << "\n  of " << set;
    }
    drawn += isDrawn ? 1 : 0;
  }
  return testing::AssertionSuccess();
}

// Starting a thread takes a hundred times as long under a sanitizer.
#ifdef DXF2D_SANITIZED
constexpr std::uint64_t kSetsByThreads = 8;
#else
constexpr std::uint64_t kSetsByThreads = 200;
#endif

// Whether the outline is the same with one thread and with several; how many depends on `number`.
testing::AssertionResult threadsAgree(const IndexedSet& set, std::uint64_t number, int& drawn) {
  constexpr std::array<std::size_t, 4> kThreads = {2, 3, 8, 17};
  const std::size_t threads = kThreads[number % kThreads.size()];
  for (const SetKind kind : {SetKind::kFaces, SetKind::kReversedFaces, SetKind::kLines}) {
    IndexedSet one = set;
    const bool isDrawn = outlineWithThreads(one, kind, 1);
    IndexedSet several = set;
    if (outlineWithThreads(several, kind, threads) != isDrawn ||
        (isDrawn &&
         (bitsOf(several.points) != bitsOf(one.points) || several.indices != one.indices))) {
      return testing::AssertionFailure()
             << threads << " threads, kind " << static_cast<int>(kind) << "\n got " << several
             << "\nwant " << one << "\n  of " << set;
    }
    drawn += isDrawn ? 1 : 0;
  }
  return testing::AssertionSuccess();
}

}  // namespace

TEST(OutlineInThreads, HostileSets) {
  Random random(11);
  int drawn = 0;
  for (std::uint64_t i = 0; i < kSetsByThreads; ++i) {
    ASSERT_TRUE(threadsAgree(hostileSet(random), i, drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, static_cast<int>(kSetsByThreads / 2));
}

TEST(OutlineInThreads, ModelsOfHosts) {
  Random random(12);
  int drawn = 0;
  for (std::uint64_t i = 0; i < std::min<std::uint64_t>(kSetsByThreads, 20); ++i) {
    const int size = static_cast<int>(3 + 2 * i);
    ASSERT_TRUE(threadsAgree(triangleSoup(random, 3 + i, 500), i, drawn)) << "soup " << i;
    ASSERT_TRUE(threadsAgree(boxes(random, 1 + 3 * i, i % 2 == 0), i, drawn)) << "boxes " << i;
    ASSERT_TRUE(threadsAgree(sphere(random, size), i, drawn)) << "sphere " << i;
    ASSERT_TRUE(threadsAgree(terrain(random, size), i, drawn)) << "terrain " << i;
  }
  EXPECT_GT(drawn, static_cast<int>(kSetsByThreads / 2));
}

TEST(OutlineAgainstReference, HostileSets) {
  Random random(1);
  int drawn = 0;
  constexpr int kSets = 60000;
  for (int i = 0; i < kSets; ++i) {
    ASSERT_TRUE(agree(hostileSet(random), drawn)) << "set " << i;
  }
  // Both results are well represented.
  EXPECT_GT(drawn, kSets / 2);
  EXPECT_LT(drawn, 3 * kSets - kSets / 10);
}

// The first two entries of a run are points whatever they are, and so end polygons early.
TEST(OutlineAgainstReference, PolygonsThatCodesCutShort) {
  int drawn = 0;
  for (const int first : {-7, 3, 9}) {
    for (const int second : {-7, 4}) {
      for (const int code : {-3, -4, -5, -7}) {
        IndexedSet set;
        for (int i = 0; i < 6; ++i) {
          set.points.emplace_back(i % 3, i / 3, i % 2);
        }
        set.indices = {0, 1, 2, -7, first, second, 4, 5, code};
        EXPECT_TRUE(agree(set, drawn)) << first << " " << second << " " << code;
      }
    }
  }
  EXPECT_GT(drawn, 0);
}

TEST(OutlineAgainstReference, TriangleSoups) {
  Random random(2);
  int drawn = 0;
  for (int i = 0; i < 4000; ++i) {
    ASSERT_TRUE(agree(triangleSoup(random, 2 + below(random, 3), 1 + below(random, 30)), drawn))
        << "set " << i;
  }
  EXPECT_GT(drawn, 4000);
}

TEST(OutlineAgainstReference, FoldsAtTheLimitsOfAngleAndTolerance) {
  Random random(3);
  int drawn = 0;
  for (int i = 0; i < 20000; ++i) {
    ASSERT_TRUE(agree(foldsNearLimits(random), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 20000);
}

TEST(OutlineAgainstReference, BoxesThatTouchAndOverlap) {
  Random random(4);
  int drawn = 0;
  for (int i = 0; i < 1500; ++i) {
    ASSERT_TRUE(agree(boxes(random, 1 + below(random, 8), i % 2 == 0), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 1500);
}

TEST(OutlineAgainstReference, Tetrahedra) {
  Random random(5);
  int drawn = 0;
  for (int i = 0; i < 3000; ++i) {
    ASSERT_TRUE(agree(tetrahedra(random, 1 + below(random, 10)), drawn)) << "set " << i;
  }
  EXPECT_GT(drawn, 3000);
}

TEST(OutlineAgainstReference, Spheres) {
  Random random(6);
  int drawn = 0;
  for (int rings = 3; rings < 40; ++rings) {
    ASSERT_TRUE(agree(sphere(random, rings), drawn)) << rings << " rings";
  }
  EXPECT_GT(drawn, 30);
}

TEST(OutlineAgainstReference, Terrains) {
  Random random(7);
  int drawn = 0;
  for (int size = 2; size < 36; ++size) {
    ASSERT_TRUE(agree(terrain(random, size), drawn)) << size << " points a side";
  }
  EXPECT_GT(drawn, 30);
}

TEST(OutlineAgainstReference, LargeRandomMeshes) {
  Random random(8);
  int drawn = 0;
  for (const std::uint64_t gridSize : {4U, 8U, 12U, 40U}) {
    ASSERT_TRUE(agree(triangleSoup(random, gridSize, 2000), drawn)) << "grid of " << gridSize;
  }
  EXPECT_EQ(drawn, 12);
}

// What one call leaves in the memory that is reused must not show in the next.
TEST(OutlineAgainstReference, SmallSetsRightAfterHugeOnes) {
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

}  // namespace dxf2d
