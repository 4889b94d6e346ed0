#include "geometry/outline/silhouette.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <vector>

#include "tests/geometry/outline/random_sets.h"

namespace dxf2d {

namespace {

const std::vector<int> kTwoTriangles = {0, 1, 2, -7, 1, 0, 3, -7};
const std::vector<std::uint32_t> kStarts = {0, 4};
constexpr Edge kShared = {0, 1};

std::vector<Facing> facingsOf(const std::vector<KtPoint3>& points, const std::vector<int>& polygons,
                              const std::vector<std::uint32_t>& starts) {
  std::vector<Facing> facings;
  findFacings({points, polygons, starts, false}, 1, facings);
  return facings;
}

Facing facingOfTriangle(const KtPoint3& a, const KtPoint3& b, const KtPoint3& c) {
  return facingsOf({a, b, c}, {0, 1, 2, -7}, {0}).front();
}

bool isPointInPlan(const KtPoint3& a, const KtPoint3& b) {
  return a.Get0() == b.Get0() && a.Get1() == b.Get1();
}

// What the two ways return for two triangles on the edge between the first two points.
struct Verdicts {
  bool quick;
  bool byNormals;
  bool isSure;
};

Verdicts verdictsOf(const std::vector<KtPoint3>& points, bool reverse) {
  const PolygonSet set{points, kTwoTriangles, kStarts, reverse};
  std::vector<Facing> facings;
  findFacings(set, 1, facings);
  return {isSilhouette(set, facings, kShared, 0, 1), isSilhouetteByNormals(set, 0, 1),
          facings[0] != Facing::kUnsure && facings[1] != Facing::kUnsure};
}

testing::AssertionResult agree(const std::vector<KtPoint3>& points, const Verdicts& verdicts) {
  if (verdicts.quick == verdicts.byNormals) {
    return testing::AssertionSuccess();
  }
  testing::AssertionResult failure = testing::AssertionFailure();
  failure << std::setprecision(17) << "quick " << verdicts.quick;
  for (const KtPoint3& point : points) {
    failure << " (" << point.Get0() << ", " << point.Get1() << ", " << point.Get2() << ")";
  }
  return failure;
}

// Compares the two ways on `pairs` pairs of triangles, whose points `makePoints` returns, with the
// orientation reversed every other time. Returns how many pairs were unsure.
template <typename MakePoints>
int expectAgreement(int pairs, MakePoints makePoints) {
  int shown = 0;
  int hidden = 0;
  int unsure = 0;
  for (int i = 0; i < pairs; ++i) {
    const std::vector<KtPoint3> points = makePoints();
    const Verdicts verdicts = verdictsOf(points, i % 2 == 0);
    if (isPointInPlan(points[0], points[1])) {
      continue;
    }
    ++(verdicts.byNormals ? shown : hidden);
    unsure += verdicts.isSure ? 0 : 1;
    const testing::AssertionResult agreement = agree(points, verdicts);
    EXPECT_TRUE(agreement);
    if (!agreement) {
      break;
    }
  }
  EXPECT_GT(shown, 10000);
  EXPECT_GT(hidden, 10000);
  return unsure;
}

// Four points whose coordinates are each what `coordinate` gives next.
template <typename Coordinate>
std::vector<KtPoint3> fourPoints(Coordinate coordinate) {
  std::vector<KtPoint3> points;
  points.reserve(4);
  for (int i = 0; i < 4; ++i) {
    points.push_back({coordinate(), coordinate(), coordinate()});
  }
  return points;
}

// The end of a triangle that stands on the line from (0, 0, 0) along x, leaning by `angle` radians
// from upright.
KtPoint3 leaning(double angle, double x, double size) {
  return {x * size, std::sin(angle) * size, std::cos(angle) * size};
}

}  // namespace

TEST(Facing, CounterClockwiseIsUp) {
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 5}), Facing::kUp);
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {0, 1, 5}, {1, 0, 0}), Facing::kDown);
}

TEST(Facing, UprightPolygonsAreEdgeOn) {
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {3, 1, 0}, {3, 1, 7}), Facing::kEdgeOn);
}

TEST(Facing, PolygonsWithoutANormalAreEdgeOn) {
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1, 1, 1}, {2, 2, 2}), Facing::kEdgeOn);
  const std::vector<KtPoint3> points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  EXPECT_EQ(facingsOf(points, {-7, 0, -7, 0, 1, -7, 0, 1, 3, -7, -3, 1, 2, -7}, {0, 1, 3, 6, 10}),
            std::vector<Facing>(5, Facing::kEdgeOn));
}

TEST(Facing, NearlyUprightPolygonsAreUnsure) {
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1, 0, 0}, leaning(0.0019, 0, 1)), Facing::kUnsure);
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1, 0, 0}, leaning(0.0021, 0, 1)), Facing::kUp);
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1, 0, 0}, leaning(-0.0021, 0, 1)), Facing::kDown);
}

TEST(Facing, AreasThatLeaveTheRangeOfNumbersAreUnsure) {
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1e100, 0, 0}, {0, 1e100, 0}), Facing::kUnsure);
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1e-100, 0, 0}, {0, 1e-60, 0}), Facing::kUnsure);
  EXPECT_EQ(facingOfTriangle({0, 0, 0}, {1e300, 0, 0}, {0, 1e300, 0}), Facing::kUnsure);
}

TEST(Silhouette, EdgeAlongTheViewIsNotLookedInto) {
  // Two upright triangles at a right angle, on an upright edge.
  const std::vector<KtPoint3> points = {{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
  const Verdicts verdicts = verdictsOf(points, false);
  EXPECT_FALSE(verdicts.quick);
  EXPECT_TRUE(verdicts.byNormals);
}

TEST(SilhouetteAgainstNormals, TrianglesAtRandom) {
  Random random(1);
  expectAgreement(100000, [&] { return fourPoints([&] { return between(random, -1, 1); }); });
}

TEST(SilhouetteAgainstNormals, TrianglesOfASmallGrid) {
  // Many are upright, lie in one plane, or are degenerate.
  Random random(2);
  expectAgreement(200000, [&] {
    return fourPoints([&] { return static_cast<double>(below(random, 3)) - 1.0; });
  });
}

TEST(SilhouetteAgainstNormals, LeaningByAboutTheTolerance) {
  Random random(3);
  const auto lean = [&] {
    return below(random, 4) == 0
               ? 0.0
               : between(random, -1, 1) * std::pow(10.0, -static_cast<double>(below(random, 20)));
  };
  const int unsure = expectAgreement(200000, [&]() -> std::vector<KtPoint3> {
    const double size = std::pow(10.0, between(random, -170, 170));
    return {{0, 0, 0},
            {size, 0, 0},
            leaning(lean(), between(random, -2, 2), size),
            leaning(lean() + (below(random, 2) == 0 ? 3.141592653589793 : 0.0),
                    between(random, -2, 2), size)};
  });
  EXPECT_GT(unsure, 10000);
}

TEST(SilhouetteAgainstNormals, UprightTrianglesThatMeetByAboutTheCreaseAngle) {
  // On an edge that is upright but for its last digits, so that it is none in plan.
  Random random(4);
  expectAgreement(200000, [&]() -> std::vector<KtPoint3> {
    const double size = std::pow(10.0, between(random, -60, 60));
    const double angle =
        between(random, -1, 1) * std::pow(10.0, -static_cast<double>(below(random, 4)));
    const double nudge = std::numeric_limits<double>::min();
    return {{0, 0, 0},
            {below(random, 2) == 0 ? nudge : 0.0, nudge, size},
            {size, 0, between(random, -1, 1) * size},
            {-std::cos(angle) * size, std::sin(angle) * size, between(random, -1, 1) * size}};
  });
}

}  // namespace dxf2d
