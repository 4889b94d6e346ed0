#include "geometry/outline/outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "ktscene/kt_g.h"

namespace dxf2d {

namespace {

using Indices = std::vector<int>;
using Points = std::vector<KtPoint3>;
using PlanPlace = std::pair<double, double>;
using PlanSegments = std::multiset<std::pair<PlanPlace, PlanPlace>>;

struct Outline {
  bool isDrawn;
  Points points;
  Indices indices;
};

Outline outlineOf(Points points, Indices indices, bool reverseOrientation = false,
                  bool closedSurface = true) {
  const bool isDrawn = BuildOutline(points, indices, reverseOrientation, closedSurface);
  return {isDrawn, points, indices};
}

// The segments of chains, each with its lesser end first.
PlanSegments segmentsOf(const Outline& outline) {
  PlanSegments segments;
  for (std::size_t k = 0; k + 1 < outline.indices.size(); ++k) {
    if (outline.indices[k] < 0 || outline.indices[k + 1] < 0) {
      continue;
    }
    const KtPoint3& a = outline.points[static_cast<std::size_t>(outline.indices[k])];
    const KtPoint3& b = outline.points[static_cast<std::size_t>(outline.indices[k + 1])];
    const PlanPlace from(a.Get0(), a.Get1());
    const PlanPlace to(b.Get0(), b.Get1());
    segments.emplace(std::min(from, to), std::max(from, to));
  }
  return segments;
}

const PlanSegments kUnitSquare = {
    {{0, 0}, {0, 1}}, {{0, 0}, {1, 0}}, {{0, 1}, {1, 1}}, {{1, 0}, {1, 1}}};

const Points kCube = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                      {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
const Indices kCubeFaces = {3, 2, 1, 0, -7, 4, 5, 6, 7, -7, 0, 1, 5, 4, -7,
                            1, 2, 6, 5, -7, 2, 3, 7, 6, -7, 3, 0, 4, 7, -7};

bool drawsEdge(const Outline& outline, const PlanPlace& from, const PlanPlace& to) {
  return segmentsOf(outline).contains({std::min(from, to), std::max(from, to)});
}

// Two triangles that fold by `angle` about an edge which leans by 0.01, so that it has a length in
// plan while both sides stand edge-on within the silhouette tolerance, one to each side of it.
bool drawsUprightFold(double angle) {
  const double x = std::cos(angle / 2);
  const double y = std::sin(angle / 2);
  const Outline outline =
      outlineOf({{0, 0, 0}, {0.01, 0, 1}, {x, y, 0}, {-x, y, 0}}, {0, 1, 2, -7, 1, 0, 3, -7});
  return drawsEdge(outline, {0, 0}, {0.01, 0});
}

// Two triangles on the edge from (0, 0) to (1, 0), one leaning towards the viewer by `up`, the
// other away by `down`.
bool drawsLevelFold(double up, double down) {
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {0, up, 1}, {0, down, -1}}, {0, 1, 2, -7, 1, 0, 3, -7});
  return drawsEdge(outline, {0, 0}, {1, 0});
}

}  // namespace

TEST(BuildOutline, SingleTriangleIsOneClosedChain) {
  const Outline outline = outlineOf({{0, 0, 5}, {1, 0, 6}, {0, 1, 7}}, {0, 1, 2, -7});
  EXPECT_TRUE(outline.isDrawn);
  // (0, 1) is the first edge, then (1, 2), then (0, 2).
  EXPECT_EQ(outline.indices, (Indices{0, 1, 2, 0, -6}));
  EXPECT_EQ(outline.points, (Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
}

TEST(BuildOutline, TriangleOfAnyWindingBeginsWithItsLowestEdge) {
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {2, 1, 0, -7});
  EXPECT_EQ(outline.indices, (Indices{0, 1, 2, 0, -6}));
}

TEST(BuildOutline, EdgeBetweenCoplanarTrianglesThatFaceTheViewerIsNotDrawn) {
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, -7, 0, 2, 3, -7});
  EXPECT_TRUE(outline.isDrawn);
  EXPECT_EQ(segmentsOf(outline), kUnitSquare);
  EXPECT_EQ(outline.indices, (Indices{0, 1, 2, 3, 0, -6}));
}

TEST(BuildOutline, ClosedCubeFromAboveIsItsSquare) {
  const Outline outline = outlineOf(kCube, kCubeFaces);
  EXPECT_TRUE(outline.isDrawn);
  EXPECT_EQ(segmentsOf(outline), kUnitSquare);
}

TEST(BuildOutline, CubeTurnedInsideOutIsTheSameSquare) {
  EXPECT_EQ(segmentsOf(outlineOf(kCube, kCubeFaces, true)), kUnitSquare);
}

TEST(BuildOutline, CubeOfDoubledPointsIsTheSameSquare) {
  Points points;
  Indices indices;
  for (const int index : kCubeFaces) {
    indices.push_back(index < 0 ? index : static_cast<int>(points.size()));
    if (index >= 0) {
      points.push_back(kCube[static_cast<std::size_t>(index)]);
    }
  }
  const Outline outline = outlineOf(points, indices);
  EXPECT_EQ(outline.points.size(), 8U);
  EXPECT_EQ(segmentsOf(outline), kUnitSquare);
}

TEST(BuildOutline, FacesThatMeetInDoubledPointsAreNeighbors) {
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}, {1, 1, 0}, {0, 1, 0}},
                {0, 1, 2, -7, 3, 4, 5, -7});
  EXPECT_EQ(outline.points.size(), 4U);
  EXPECT_EQ(segmentsOf(outline), kUnitSquare);
}

TEST(BuildOutline, RunsOfCodeMinusTwoHaveNoOutline) {
  EXPECT_FALSE(outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2, -2, 0, 1, 2, -2}).isDrawn);
}

TEST(BuildOutline, RunsBelowTheirMinimumHaveNoOutline) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  for (const int code : {-7, -5, -4, -3}) {
    EXPECT_FALSE(outlineOf(points, {0, 1, code}).isDrawn) << code;
  }
  EXPECT_FALSE(outlineOf(points, {0, -6}).isDrawn);
  EXPECT_FALSE(outlineOf(points, {0, -1}).isDrawn);
}

TEST(BuildOutline, SegmentRunOfThreeIsIgnored) {
  EXPECT_FALSE(outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2, -1}).isDrawn);
}

TEST(BuildOutline, CodesBelowMinusSevenAreIgnored) {
  EXPECT_FALSE(outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2, -8}).isDrawn);
}

TEST(BuildOutline, ExplicitLinesAreDrawnFlat) {
  const Outline outline =
      outlineOf({{0, 0, 3}, {1, 0, 4}, {1, 1, 5}, {7, 7, 7}}, {0, 1, 2, -6, 2, 3, -1});
  EXPECT_TRUE(outline.isDrawn);
  EXPECT_EQ(outline.indices, (Indices{0, 1, 2, 3, -6}));
  for (const KtPoint3& point : outline.points) {
    EXPECT_EQ(point.Get2(), 0.0);
  }
}

TEST(BuildOutline, ExplicitEdgeInBothOrdersIsDrawnOnce) {
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}}, {0, 1, -1, 1, 0, -1});
  EXPECT_EQ(outline.indices, (Indices{0, 1, -6}));
}

TEST(BuildOutline, ExplicitEdgeBetweenFacesIsDrawn) {
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, -7, 0, 2, 3, -7, 2, 0, -1});
  EXPECT_EQ(segmentsOf(outline).size(), 5U);
  EXPECT_TRUE(drawsEdge(outline, {0, 0}, {1, 1}));
}

TEST(BuildOutline, CreaseBetweenFacesOfTheSameSideIsNeverDrawn) {
  // A steep roof: its ridge does not show from above.
  const Outline outline =
      outlineOf({{0, 0, 0}, {2, 0, 0}, {2, 1, 50}, {0, 1, 50}, {2, 2, 0}, {0, 2, 0}},
                {0, 1, 2, 3, -7, 3, 2, 4, 5, -7});
  EXPECT_EQ(segmentsOf(outline).size(), 6U);
  EXPECT_FALSE(drawsEdge(outline, {0, 1}, {2, 1}));
}

TEST(BuildOutline, SilhouetteBetweenFacesOfOppositeSidesIsDrawn) {
  // A shelf: the lower half folds back under the upper one.
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 0.5, -1}}, {0, 1, 2, -7, 1, 0, 3, -7});
  EXPECT_TRUE(drawsEdge(outline, {0, 0}, {1, 0}));
}

TEST(BuildOutline, EdgeThatThreePolygonsShareIsNotDrawn) {
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 2, 3}},
                                    {0, 1, 2, -7, 1, 0, 3, -7, 0, 1, 4, -7});
  EXPECT_FALSE(drawsEdge(outline, {0, 0}, {1, 0}));
}

TEST(BuildOutline, ReversingEveryFaceChangesNothingThatIsDrawn) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 1}};
  const Indices indices = {0, 1, 2, -7, 0, 3, 2, -7};
  EXPECT_EQ(outlineOf(points, indices, false).indices, outlineOf(points, indices, true).indices);
}

TEST(BuildOutline, ClosedSurfaceHasNoEffect) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  EXPECT_EQ(outlineOf(points, {0, 1, 2, -7}, false, false).indices,
            outlineOf(points, {0, 1, 2, -7}, false, true).indices);
}

TEST(BuildOutline, UprightEdgeIsDrawnAboveTheCreaseAngle) {
  EXPECT_TRUE(drawsUprightFold(0.0401));
  EXPECT_FALSE(drawsUprightFold(0.0399));
}

TEST(BuildOutline, LevelEdgeIsDrawnAboveTheSilhouetteTolerance) {
  EXPECT_TRUE(drawsLevelFold(0.0006, 0.0006));
  EXPECT_FALSE(drawsLevelFold(0.0004, 0.0004));
}

TEST(BuildOutline, LevelEdgeExactlyAtTheToleranceIsNotDrawn) {
  // Beside a polygon without a normal, whose z is 0, the difference is the other's z.
  const auto zOf = [](double lean) {
    KtPoint3 normal;
    KtG::ComputeNormal({{0, 0, 0}, {1, 0, 0}, {0, lean, 1}}, {0, 1, 2, -7}, 0, true, normal);
    return normal.Get2();
  };
  const auto draws = [](double lean) {
    return drawsEdge(
        outlineOf({{0, 0, 0}, {1, 0, 0}, {0, lean, 1}, {-1, 0, 0}}, {0, 1, 2, -7, 1, 0, 3, -7}),
        {0, 0}, {1, 0});
  };
  double lean = std::tan(std::asin(0.001)) - 1e-17;
  while (zOf(lean) < 0.001) {
    lean = std::nextafter(lean, 1.0);
  }
  ASSERT_EQ(zOf(lean), 0.001);
  EXPECT_FALSE(draws(lean));
  while (zOf(lean) == 0.001) {
    lean = std::nextafter(lean, 1.0);
  }
  EXPECT_TRUE(draws(lean));
}

TEST(BuildOutline, PolygonWithoutANormalCountsAsEdgeOn) {
  // The second polygon has no area; its edge to a level one is a silhouette.
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}}, {0, 1, 2, -7, 1, 0, 3, -7});
  EXPECT_TRUE(drawsEdge(outline, {0, 0}, {1, 0}));
}

TEST(BuildOutline, TwoPolygonsWithoutNormalsHideTheirEdge) {
  const Outline outline =
      outlineOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}, {0, 1, 2, -7, 1, 0, 3, -7});
  EXPECT_FALSE(drawsEdge(outline, {0, 0}, {1, 0}));
  EXPECT_TRUE(drawsEdge(outline, {0, 0}, {2, 0}));
}

TEST(BuildOutline, VerticalFaceIsALine) {
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}, {0, 1, 2, 3, -7});
  EXPECT_TRUE(outline.isDrawn);
  EXPECT_EQ(segmentsOf(outline), (PlanSegments{{{0, 0}, {1, 0}}}));
}

TEST(BuildOutline, EdgesAlongTheViewAloneHaveNoOutline) {
  EXPECT_FALSE(outlineOf({{0, 0, 0}, {0, 0, 1}}, {0, 1, -1}).isDrawn);
  EXPECT_FALSE(outlineOf({{0, 0, 0}, {0, 0, 1}, {0, 0, 2}}, {0, 1, 2, -7}).isDrawn);
}

TEST(BuildOutline, WithoutAnEdgePointsAreWeldedAndNotFlattened) {
  const Outline outline = outlineOf({{0, 0, 3}, {0, 0, 3}, {1, 0, 4}}, {1, 2, -7});
  EXPECT_FALSE(outline.isDrawn);
  EXPECT_EQ(outline.points, (Points{{0, 0, 3}, {1, 0, 4}}));
  EXPECT_EQ(outline.indices, (Indices{0, 1, -7}));
}

TEST(BuildOutline, OfEdgesAtOnePlaceTheFirstStays) {
  // Top and bottom of the cube, of which the bottom has the lower numbers.
  const Outline outline = outlineOf(kCube, kCubeFaces);
  EXPECT_EQ(outline.indices, (Indices{0, 1, 2, 3, 0, -6}));
}

TEST(BuildOutline, EntriesThatNameNoPointLeaveTheOtherEdges) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  const Outline polygon = outlineOf(points, {0, 1, 2, 99, 3, -7});
  EXPECT_EQ(segmentsOf(polygon),
            (PlanSegments{{{0, 0}, {0, 1}}, {{0, 0}, {1, 0}}, {{1, 0}, {1, 1}}}));
  const Outline strip = outlineOf(points, {0, 1, 99, 2, 3, -6});
  EXPECT_EQ(strip.indices, (Indices{0, 1, -6, 2, 3, -6}));
}

TEST(BuildOutline, PointsThatAreNotFiniteLeaveTheOtherEdges) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const Outline outline =
      outlineOf({{0, 0, kNan}, {0, 0, 0}, {1, 0, 0}, {kInfinity, 0, 0}, {1, 1, 0}},
                {1, 2, 4, 3, -7, 0, 1, -1});
  EXPECT_EQ(segmentsOf(outline), (PlanSegments{{{0, 0}, {1, 0}}, {{1, 0}, {1, 1}}}));
}

TEST(BuildOutline, BadEntriesAloneHaveNoOutline) {
  EXPECT_FALSE(outlineOf({{0, 0, 0}}, {5, 6, 7, -7, 5, 6, -1, 0, 9, -6}).isDrawn);
  EXPECT_FALSE(outlineOf({}, {0, 1, 2, -7}).isDrawn);
}

TEST(BuildOutline, PolygonCodeAmongEntriesEndsThePolygonThere) {
  // The second polygon, skipped to from the -1, is 0 -7 1 2: two polygons, the second with one
  // edge.
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, -1, 0, -7, 1, 2, -7});
  EXPECT_EQ(segmentsOf(outline), (PlanSegments{{{0, 1}, {1, 0}}}));
}

TEST(BuildOutline, TrailingGroupOfATriangleListReachesIntoTheNextRun) {
  // The group 3, -5, 4 has one edge, from 4 round to 3.
  const Outline outline = outlineOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 0}, {6, 5, 0}},
                                    {0, 1, 2, 3, -5, 4, 0, -2});
  EXPECT_TRUE(drawsEdge(outline, {5, 5}, {6, 5}));
  EXPECT_EQ(segmentsOf(outline).size(), 4U);
}

TEST(BuildOutline, ListsFansAndStripsOfOneSquareDrawIt) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  EXPECT_EQ(segmentsOf(outlineOf(points, {0, 1, 2, 0, 2, 3, -5})), kUnitSquare);
  EXPECT_EQ(segmentsOf(outlineOf(points, {0, 1, 2, 3, -4})), kUnitSquare);
  EXPECT_EQ(segmentsOf(outlineOf(points, {0, 1, 3, 2, -3})), kUnitSquare);
}

}  // namespace dxf2d
