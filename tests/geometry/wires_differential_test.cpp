// The wire frames against their reference implementation.
#include <gtest/gtest.h>

#include <vector>

#include "geometry/face_wires.h"
#include "ktscene/kt_matrix.h"
#include "tests/geometry/outline/random_sets.h"
#include "tests/geometry/reference_wires.h"

namespace dxf2d {

namespace {

KtMatrix anyMatrix(Random& random) {
  KtMatrix matrix;
  if (below(random, 3) == 0) {
    return matrix;
  }
  double data[16];
  matrix.Rotate(0, 1, 1, between(random, -3, 3));
  matrix.GetData(data);
  // Now and then so large that huge points are taken to infinity.
  data[0] *= below(random, 4) == 0 ? 1e10 : 2.0;
  matrix.Init(data);
  return matrix;
}

// Whether the three stages agree with the reference implementation on `set`; `kept` counts the
// segments.
testing::AssertionResult agree(const IndexedSet& set, const KtMatrix& matrix, std::size_t& kept) {
  const std::vector<int> regrouped = regroupRuns(set.indices);
  if (regrouped != referenceRegroupRuns(set.indices)) {
    return testing::AssertionFailure() << "regroupRuns of " << set;
  }
  for (const bool planar : {false, true}) {
    const std::vector<int> runs = edgeRuns(regrouped, planar);
    if (runs != referenceEdgeRuns(regrouped, planar)) {
      return testing::AssertionFailure() << "edgeRuns, planar " << planar << ", of " << set;
    }
    const std::vector<int> segments = distinctSegments(runs, set.points, matrix);
    if (segments != referenceDistinctSegments(runs, set.points, matrix)) {
      return testing::AssertionFailure() << "distinctSegments, planar " << planar << ", of " << set;
    }
    kept += segments.size() / 3;
  }
  return testing::AssertionSuccess();
}

// Moves coordinates by about the tolerance, from wherever the set lies.
void shake(Random& random, IndexedSet& set) {
  const double far = below(random, 3) == 0 ? 1e5 * between(random, -1, 1) : 0.0;
  for (KtPoint3& point : set.points) {
    const auto moved = [&](double value) {
      return value + far + 0.00005 * static_cast<double>(below(random, 5));
    };
    point.Set(moved(point.Get0()), moved(point.Get1()), point.Get2());
  }
}

}  // namespace

TEST(WiresAgainstReference, HostileSets) {
  Random random(11);
  std::size_t kept = 0;
  for (int i = 0; i < 40000; ++i) {
    ASSERT_TRUE(agree(hostileSet(random), anyMatrix(random), kept)) << "set " << i;
  }
  EXPECT_GT(kept, 40000U);
}

TEST(WiresAgainstReference, TrianglesThatAlmostCoincide) {
  Random random(12);
  std::size_t kept = 0;
  for (int i = 0; i < 3000; ++i) {
    IndexedSet set = triangleSoup(random, 2 + below(random, 2), 1 + below(random, 20));
    shake(random, set);
    ASSERT_TRUE(agree(set, anyMatrix(random), kept)) << "set " << i;
  }
  EXPECT_GT(kept, 6000U);
}

TEST(WiresAgainstReference, BoxesWhoseEdgesAlmostCoincide) {
  Random random(13);
  std::size_t kept = 0;
  for (int i = 0; i < 500; ++i) {
    IndexedSet set = boxes(random, 1 + below(random, 8), i % 2 == 0);
    shake(random, set);
    ASSERT_TRUE(agree(set, anyMatrix(random), kept)) << "set " << i;
  }
  EXPECT_GT(kept, 1000U);
}

TEST(WiresAgainstReference, TerrainsAndSpheres) {
  Random random(14);
  std::size_t kept = 0;
  for (int size = 3; size < 24; ++size) {
    ASSERT_TRUE(agree(terrain(random, size), KtMatrix(), kept)) << size;
    ASSERT_TRUE(agree(sphere(random, size), KtMatrix(), kept)) << size;
  }
  EXPECT_GT(kept, 1000U);
}

TEST(WiresAgainstReference, LargeRandomMeshes) {
  Random random(15);
  std::size_t kept = 0;
  ASSERT_TRUE(agree(triangleSoup(random, 6, 2000), KtMatrix(), kept));
  ASSERT_TRUE(agree(triangleSoup(random, 40, 1500), KtMatrix(), kept));
  EXPECT_GT(kept, 3000U);
}

}  // namespace dxf2d
