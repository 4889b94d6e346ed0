// What each stage of repair does and counts, on meshes small enough to see it.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <span>

#include "mesh/cleaning.h"
#include "mesh/duplicates.h"
#include "mesh/near_points.h"
#include "mesh/orientation.h"
#include "mesh/plan_points.h"
#include "mesh/point_collector.h"
#include "mesh/repair.h"
#include "mesh/t_junctions.h"
#include "mesh/weld.h"
#include "tests/mesh/sample_meshes.h"

using namespace dxf2d::mesh;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A unit square in the plane z = 0 with its least corner at (x, y).
void addSquare(PolygonMesh& mesh, double x, double y, double size = 1.0) {
  addPolygon(mesh, {{x, y, 0}, {x + size, y, 0}, {x + size, y + size, 0}, {x, y + size, 0}});
}

PolygonMesh withSharedPoints(PolygonMesh mesh) {
  weld(mesh, UsedPoints(mesh), 1e-9);
  return mesh;
}

TEST(Weld, CountsThePointsThatEqualOthers) {
  PolygonMesh mesh = withoutSharedPoints(makeBox(), 0.0);
  EXPECT_EQ(weld(mesh, UsedPoints(mesh), 0.0), 16U);
  EXPECT_EQ(mesh.points.size(), 8U);
}

TEST(Weld, MakesMinusZeroTheZeroThatItEquals) {
  PolygonMesh mesh;
  mesh.points = {{0.0, 0.0, 0.0}, {-0.0, -0.0, -0.0}, {1.0, 0.0, 0.0}};
  mesh.segments = {{0, 2, 0}, {1, 2, 0}};
  EXPECT_EQ(weld(mesh, UsedPoints(mesh), 0.0), 1U);
  EXPECT_EQ(mesh.segments[1], (Segment{0, 1, 0}));
}

TEST(Weld, DoesNotCountPointsThatNothingUses) {
  PolygonMesh mesh = makeBox();
  mesh.points.push_back({9, 9, 9});
  EXPECT_EQ(weld(mesh, UsedPoints(mesh), 0.0), 0U);
  EXPECT_EQ(mesh, makeBox());
}

// The mesh as a PointCollector gathers its corners, `batch` at a time.
PolygonMesh collected(const PolygonMesh& soup, std::size_t batch) {
  PolygonMesh mesh = soup;
  mesh.points.clear();
  PointCollector collector(mesh.points, soup.corners.size());
  std::vector<Point> corners;
  for (const Index corner : soup.corners) {
    corners.push_back(soup.points[corner]);
  }
  for (std::size_t begin = 0; begin < corners.size(); begin += batch) {
    const std::size_t size = std::min(batch, corners.size() - begin);
    collector.Add(std::span(corners).subspan(begin, size), mesh.corners.data() + begin);
  }
  return mesh;
}

TEST(PointCollector, GathersWhatWeldingMakesOfAllCorners) {
  std::mt19937 random(11);
  std::uniform_int_distribution<int> place(-4, 4);
  for (const int count : {1, 7, 100, 3000}) {
    PolygonMesh soup;
    for (int i = 0; i < count; ++i) {
      const auto any = [&] { return -0.25 * place(random); };
      addPolygon(soup, {{any(), any(), any()}, {any(), any(), any()}, {any(), any(), any()}});
    }
    PolygonMesh welded = soup;
    weld(welded, UsedPoints(welded), 0.0);
    EXPECT_EQ(collected(soup, 3), welded);
    EXPECT_EQ(collected(soup, PointCollector::kMostOfBatch), welded);
  }
}

TEST(PointCollector, LeavesThePointsThatAreThereAlone) {
  std::vector<Point> points = {{1, 2, 3}};
  PointCollector collector(points, 2);
  std::array<Index, 2> numbers = {};
  collector.Add(std::vector<Point>{{1, 2, 3}, {1, 2, 3}}, numbers.data());
  EXPECT_EQ(points.size(), 2U);
  EXPECT_EQ(numbers, (std::array<Index, 2>{1, 1}));
}

TEST(Repair, OfPointsThatAreDistinctDoesWhatItDoesForAny) {
  PolygonMesh soup = withoutSharedPoints(makeBox(), 0.0);
  // Near an earlier one, but not equal.
  soup.points[soup.corners.back()][0] += 1e-9;
  PolygonMesh gathered = collected(soup, 6);
  RepairOptions known;
  known.arePointsDistinct = true;
  RepairCounts counts = repair(soup, {}).counts;
  EXPECT_EQ(repair(gathered, known).counts.pointsWelded, 1U);
  EXPECT_EQ(gathered, soup);
  EXPECT_EQ(counts.pointsWelded, 16U);
}

TEST(WeldDistance, IsAShareOfTheDiagonalOfThePointsInUse) {
  PolygonMesh mesh = makeBox({0, 0, 0}, {2, 3, 6});
  mesh.points.push_back({1e9, 0, 0});
  EXPECT_DOUBLE_EQ(UsedPoints(mesh).WeldDistance(1e-6), 7e-6);
}

TEST(WeldDistance, DoesNotGrowWithAStrayTriangleFarAway) {
  PolygonMesh mesh = withSharedPoints(makeCylinder(24));
  const double before = UsedPoints(mesh).DefaultWeldDistance();
  addPolygon(mesh, {{1e9, 0, 0}, {1e9 + 1, 0, 0}, {1e9, 1, 0}});
  const std::size_t points = mesh.points.size();
  EXPECT_LT(UsedPoints(mesh).DefaultWeldDistance(), 10000 * before);
  EXPECT_EQ(repair(mesh, {}).counts.pointsWelded, 0U);
  EXPECT_EQ(mesh.points.size(), points);
}

TEST(WeldDistance, IsOfTheWholeDiagonalWhenToldAsAShare) {
  PolygonMesh mesh = withSharedPoints(makeCylinder(24));
  addPolygon(mesh, {{1e9, 0, 0}, {1e9 + 1, 0, 0}, {1e9, 1, 0}});
  EXPECT_GE(repair(mesh, {1e-6}).distance, 1000.0);
}

TEST(WeldDistance, IsZeroBelowThePrecisionOfDoubles) {
  const UsedPoints used(makeBox());
  EXPECT_EQ(used.WeldDistance(0.0), 0.0);
  EXPECT_EQ(used.WeldDistance(1e-16), 0.0);
}

TEST(JoinNear, IsEmptyWhenAllPointsAreApart) {
  const std::vector<Point> points = {{0, 0, 0}, {1, 0, 0}, {0, 2, 0}};
  EXPECT_TRUE(joinNear(points, {{0, 0, 0}, {1, 2, 0}}, 0.5).empty());
}

TEST(JoinNear, GivesTheFirstKeptPointWithinTheDistance) {
  // The third is near the second, but that one is not kept.
  const std::vector<Point> points = {{0, 0, 0}, {0.8, 0, 0}, {1.6, 0, 0}, {2.4, 0, 0}};
  const auto joined = joinNear(points, {{0, 0, 0}, {2.4, 0, 0}}, 1.0);
  EXPECT_EQ(std::vector<Index>(joined.begin(), joined.end()), (std::vector<Index>{0, 0, 2, 2}));
}

TEST(JoinNear, JoinsPointsInABoxTooWideForItsCells) {
  // Far beyond 1e15 cells, only equal coordinates are near each other.
  const std::vector<Point> points = {{-1e60, 0, 0},    {0, 0, 0},     {1e60, 0, 0},
                                     {-1e60, 1e-7, 0}, {-1e-7, 0, 0}, {1e60, 1, 0}};
  const auto joined = joinNear(points, {{-1e60, 0, 0}, {1e60, 1, 0}}, 1e-6);
  EXPECT_EQ(std::vector<Index>(joined.begin(), joined.end()),
            (std::vector<Index>{0, 1, 2, 0, 1, 5}));
}

TEST(DropNotFinite, CountsPolygonsAndSegments) {
  PolygonMesh mesh = makeBox();
  const auto count = static_cast<Index>(mesh.points.size());
  mesh.points.insert(mesh.points.end(), {{kNaN, 0, 0}, {0, kInfinity, 0}, {0, 0, -1e76}});
  mesh.Add(std::vector<Index>{0, 1, count}, 0);
  mesh.Add(std::vector<Index>{0, 1, count + 1}, 0);
  mesh.segments = {{0, count + 2, 0}, {0, 1, 0}};
  EXPECT_FALSE(UsedPoints(mesh).areUsable);
  EXPECT_EQ(dropNotFinite(mesh), 3U);
  EXPECT_EQ(mesh.corners, makeBox().corners);
  EXPECT_EQ(mesh.segments, (std::vector<Segment>{{0, 1, 0}}));
}

TEST(DropDegenerate, CountsByReason) {
  PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {2, 0, 0}};
  mesh.Add(std::vector<Index>{0, 1, 1, 2, 0}, 0);  // a triangle with two corners twice
  mesh.Add(std::vector<Index>{0, 1, 3}, 0);        // three on a line
  mesh.Add(std::vector<Index>{0, 1, 1, 0}, 0);     // two corners
  mesh.Add(std::vector<Index>{}, 0);
  mesh.segments = {{1, 1, 0}, {0, 3, 0}};
  const CleaningCounts counts = dropDegenerate(mesh, 1e-6);
  EXPECT_EQ(counts.repeatedCorners, 2U);
  EXPECT_EQ(counts.degeneratePolygons, 3U);
  EXPECT_EQ(counts.degenerateSegments, 1U);
  EXPECT_EQ(mesh.corners, (std::vector<Index>{0, 1, 2}));
  EXPECT_EQ(mesh.starts, (std::vector<Index>{0, 3}));
}

TEST(DropDuplicatePolygons, KeepsTheFirstOfTrianglesInAnyOrder) {
  PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  for (const std::vector<Index>& corners : {std::vector<Index>{0, 1, 2}, {2, 1, 0}, {0, 2, 3}}) {
    mesh.Add(corners, static_cast<Index>(mesh.PolygonCount()));
  }
  EXPECT_EQ(dropDuplicatePolygons(mesh, EdgeTable(mesh)).dropped, 1U);
  EXPECT_EQ(mesh.parts, (std::vector<Index>{0, 2}));
}

TEST(DropDuplicatePolygons, FindsQuadsThatShareNoOrder) {
  PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  mesh.Add(std::vector<Index>{0, 1, 2, 3}, 0);
  mesh.Add(std::vector<Index>{0, 2, 1, 3}, 0);
  EXPECT_EQ(dropDuplicatePolygons(mesh, EdgeTable(mesh)).dropped, 1U);
}

TEST(DropDuplicatePolygons, FindsThemAroundAPointOfManyTriangles) {
  // More pairs in one row of the edge table than are looked at one by one.
  PolygonMesh mesh;
  mesh.points = {{0, 0, 1}};
  constexpr Index kSides = 100;
  for (Index i = 0; i < kSides; ++i) {
    const double angle = 0.06 * i;
    mesh.points.push_back({std::cos(angle), std::sin(angle), 0});
  }
  for (Index i = 1; i < kSides; ++i) {
    mesh.Add(std::vector<Index>{0, i, i + 1}, 0);
  }
  const PolygonMesh fan = mesh;
  mesh.Add(std::vector<Index>{90, 91, 0}, 0);
  EXPECT_EQ(dropDuplicatePolygons(mesh, EdgeTable(mesh)).dropped, 1U);
  EXPECT_EQ(mesh, fan);
}

TEST(DropDuplicateSegments, KeepsTheFirstOfBothWays) {
  PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {1, 0, 0}};
  mesh.segments = {{0, 1, 0}, {1, 0, 1}};
  EXPECT_EQ(dropDuplicateSegments(mesh), 1U);
  EXPECT_EQ(mesh.segments, (std::vector<Segment>{{0, 1, 0}}));
}

TEST(CloseTJunctions, CountsTheInsertedPoints) {
  PolygonMesh mesh;
  addSquare(mesh, 0, 0, 2.0);
  addSquare(mesh, 2, 0);
  addSquare(mesh, 2, 1);
  weld(mesh, UsedPoints(mesh), 0.0);
  const TJunctionCounts counts = closeTJunctions(mesh, EdgeTable(mesh), 1e-6);
  EXPECT_EQ(counts.pointsInserted, 1U);
  EXPECT_EQ(counts.edgesNotSearched, 0U);
  EXPECT_EQ(mesh.Polygon(0).size(), 5U);
}

TEST(CloseTJunctions, TellsAtHowManyEdgesItDidNotLook) {
  // Triangles whose bases all lie on one line and overlap.
  PolygonMesh mesh;
  constexpr int kTriangles = 300;
  for (int i = 0; i < kTriangles; ++i) {
    const double left = i * 0.01;
    addPolygon(mesh, {{left, 0, 0}, {1000 - left, 0, 0}, {500, 1 + left, 1.0 + i}});
  }
  const EdgeTable edges(mesh);
  ASSERT_EQ(edges.BorderCount(), 3U * kTriangles);
  const TJunctionCounts counts = closeTJunctions(mesh, edges, 1e-6);
  EXPECT_GT(counts.edgesNotSearched, 0U);
  EXPECT_LT(counts.pointsInserted, 20U * edges.BorderCount());
}

TEST(Orient, CountsPolygonsOfPiecesThatDisagree) {
  PolygonMesh mesh = makeBox();
  reversePolygon(mesh, 4);
  EdgeTable edges(mesh);
  const OrientationCounts counts = orient(mesh, edges);
  EXPECT_EQ(counts.polygonsFlipped, 1U);
  EXPECT_EQ(counts.piecesTurnedOutward, 0U);
  EXPECT_EQ(edges.DisagreeingCount(), 0U);
}

TEST(Orient, CountsClosedPiecesThatFacedInwards) {
  PolygonMesh mesh = makeBox();
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    reversePolygon(mesh, p);
  }
  EdgeTable edges(mesh);
  const OrientationCounts counts = orient(mesh, edges);
  EXPECT_EQ(counts.polygonsFlipped, 0U);
  EXPECT_EQ(counts.piecesTurnedOutward, 1U);
}

TEST(Orient, LeavesAMoebiusStripAndCountsIt) {
  PolygonMesh mesh = makeMoebiusStrip(12, 0);
  const PolygonMesh before = mesh;
  EdgeTable edges(mesh);
  EXPECT_EQ(orient(mesh, edges).nonOrientablePieces, 1U);
  EXPECT_EQ(mesh, before);
}

TEST(JoinInPlan, MovesPointsToEarlierOnesAboveOrBelow) {
  std::vector<Point> points = {{1, 1, 0}, {1.001, 1, 5}, {1.001, 1, 9}, {2, 1, 0}};
  const PlanPoints plan = joinInPlan(points, {1, 1, 1, 1}, 0.01);
  EXPECT_TRUE(plan.isMoved);
  EXPECT_EQ(points[1], (Point{1, 1, 5}));
  EXPECT_EQ(points[2], (Point{1, 1, 9}));
  EXPECT_EQ(std::vector<Index>(plan.first.begin(), plan.first.end()),
            (std::vector<Index>{0, 0, 0, 3}));
}

TEST(JoinInPlan, MovesNothingThatIsNotLookedAtOrWithoutADistance) {
  std::vector<Point> points = {{1, 1, 0}, {1.001, 1, 5}};
  EXPECT_FALSE(joinInPlan(points, {1, 1}, 0.0).isMoved);
  const PlanPoints plan = joinInPlan(points, {1, 0}, 0.01);
  EXPECT_FALSE(plan.isMoved);
  EXPECT_EQ(plan.first[1], kNone);
}

TEST(Repair, LeavesACleanMeshAsItIs) {
  for (const PolygonMesh& clean :
       {makeBox(), withSharedPoints(makeCylinder(24)), withSharedPoints(makeHippedRoof())}) {
    PolygonMesh mesh = clean;
    EXPECT_TRUE(repair(mesh, {}).counts == RepairCounts());
    EXPECT_TRUE(mesh == clean);
  }
}

TEST(Repair, CountsAllThatItDoes) {
  PolygonMesh mesh = withoutSharedPoints(makeBox(), 0.0);
  reversePolygon(mesh, 2);
  mesh.Add(std::vector<Index>{3, 2, 1, 0}, 0);
  mesh.Add(std::vector<Index>{0, 0, 1}, 0);
  mesh.points.push_back({kNaN, 0, 0});
  mesh.Add(std::vector<Index>{0, 1, static_cast<Index>(mesh.points.size() - 1)}, 0);
  mesh.segments = {{0, 1, 0}, {1, 0, 0}, {2, 2, 0}};
  RepairCounts expected;
  expected.pointsWelded = 16;
  expected.notFinite = 1;
  expected.degeneratePolygons = 1;
  expected.duplicatePolygons = 1;
  expected.degenerateSegments = 1;
  expected.duplicateSegments = 1;
  expected.polygonsFlipped = 1;
  EXPECT_EQ(repair(mesh, {}).counts, expected);
}

TEST(Repair, DropsCoordinatesWhoseAreasOverflow) {
  PolygonMesh mesh = makeBox();
  addPolygon(mesh, {{1e300, 0, 0}, {0, 1e300, 0}, {0, 0, -1e300}});
  const Repaired repaired = repair(mesh, {});
  EXPECT_EQ(repaired.counts.notFinite, 1U);
  EXPECT_GT(repaired.distance, 0.0);
  EXPECT_EQ(mesh, makeBox());
}

}  // namespace
