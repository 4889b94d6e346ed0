// What is drawn of models as they come, once they are repaired.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "mesh/ear_clipping.h"
#include "mesh/vector.h"
#include "tests/mesh/plan_drawing.h"
#include "tests/mesh/sample_meshes.h"

using namespace dxf2d::mesh;

namespace {

// Expects that `mesh` draws as `lines`, from all sides.
void expectLines(const PolygonMesh& mesh, const std::vector<Line>& lines) {
  for (const View& view : allViews()) {
    SCOPED_TRACE(view.name);
    EXPECT_EQ(repairedPlan(mesh, view), joinedPlan(lines, view));
  }
}

void expectBox(const PolygonMesh& mesh) { expectLines(mesh, boxEdges({0, 0, 0}, {2, 3, 4})); }

PolygonMesh boxWithFacesTwice(bool isReversed) {
  const PolygonMesh box = makeBox();
  PolygonMesh mesh = box;
  for (std::size_t p = 0; p < 6; ++p) {
    const std::span<const Index> corners = box.Polygon(p);
    mesh.Add(std::vector<Index>(corners.begin(), corners.end()), 0);
    if (isReversed) {
      reversePolygon(mesh, 6 + p);
    }
  }
  return mesh;
}

TEST(RepairedDrawing, BoxShowsAllItsEdges) { expectBox(makeBox()); }

TEST(RepairedDrawing, BoxWithEveryFaceTwiceIsTheBox) { expectBox(boxWithFacesTwice(false)); }

TEST(RepairedDrawing, BoxWithEveryFaceBothWaysRoundIsTheBox) { expectBox(boxWithFacesTwice(true)); }

TEST(RepairedDrawing, RandomlyWoundBoxIsTheBox) {
  std::mt19937 random(1);
  for (int round = 0; round < 20; ++round) {
    PolygonMesh mesh = makeBox();
    for (std::size_t p = 0; p < 6; ++p) {
      if (random() % 2 == 0) {
        reversePolygon(mesh, p);
      }
    }
    expectBox(mesh);
  }
}

TEST(RepairedDrawing, BoxWithOneFaceFlippedIsTheBox) {
  for (std::size_t p = 0; p < 6; ++p) {
    PolygonMesh mesh = makeBox();
    reversePolygon(mesh, p);
    expectBox(mesh);
  }
}

TEST(RepairedDrawing, BoxSplitOverMeshesIsTheBox) {
  PolygonMesh mesh = withoutSharedPoints(makeBox(), 0.0);
  for (Index p = 0; p < 6; ++p) {
    mesh.parts[p] = p;
  }
  expectBox(mesh);
}

TEST(RepairedDrawing, UnweldedBoxIsTheBox) { expectBox(withoutSharedPoints(makeBox(), 1e-7)); }

TEST(RepairedDrawing, BoxWithATJunctionIsTheBox) {
  PolygonMesh mesh = withoutSharedPoints(makeBox(), 0.0);
  // The upper face, at 4, as two quads with ends in the middle of the neighbors' edges.
  PolygonMesh split;
  for (std::size_t p = 0; p < 6; ++p) {
    if (p != 1) {
      std::vector<Point> corners;
      for (const Index corner : mesh.Polygon(p)) {
        corners.push_back(mesh.points[corner]);
      }
      addPolygon(split, corners);
    }
  }
  addPolygon(split, {{0, 0, 4}, {1, 0, 4}, {1, 3, 4}, {0, 3, 4}});
  addPolygon(split, {{1, 0, 4}, {2, 0, 4}, {2, 3, 4}, {1, 3, 4}});
  expectBox(split);
}

TEST(RepairedDrawing, WallOnAFloorShowsBoth) {
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}});
  addPolygon(mesh, {{2, 0, 0}, {5, 0, 0}, {5, 3, 0}, {2, 3, 0}});
  addPolygon(mesh, {{2, 0, 0}, {2, 3, 0}, {2, 3, 2}, {2, 0, 2}});
  expectLines(mesh, {{{{0, 0, 0}, {5, 0, 0}}},
                     {{{5, 0, 0}, {5, 3, 0}}},
                     {{{5, 3, 0}, {0, 3, 0}}},
                     {{{0, 3, 0}, {0, 0, 0}}},
                     {{{2, 0, 0}, {2, 3, 0}}},
                     {{{2, 3, 0}, {2, 3, 2}}},
                     {{{2, 3, 2}, {2, 0, 2}}},
                     {{{2, 0, 2}, {2, 0, 0}}}});
}

TEST(RepairedDrawing, BoxesThatShareAnEdgeShowBoth) {
  PolygonMesh mesh = withoutSharedPoints(makeBox({0, 0, 0}, {2, 3, 4}), 0.0);
  const PolygonMesh other = makeBox({2, 3, 0}, {5, 7, 4});
  for (std::size_t p = 0; p < 6; ++p) {
    std::vector<Point> corners;
    for (const Index corner : other.Polygon(p)) {
      corners.push_back(other.points[corner]);
    }
    addPolygon(mesh, corners);
  }
  std::vector<Line> lines = boxEdges({0, 0, 0}, {2, 3, 4});
  const std::vector<Line> more = boxEdges({2, 3, 0}, {5, 7, 4});
  lines.insert(lines.end(), more.begin(), more.end());
  expectLines(mesh, lines);
}

// Two boxes of two parts that touch in a square.
PolygonMesh touchingBoxes() {
  PolygonMesh mesh = makeBox({0, 0, 0}, {2, 3, 4});
  const PolygonMesh other = makeBox({2, 0, 0}, {7, 3, 4});
  for (std::size_t p = 0; p < other.PolygonCount(); ++p) {
    std::vector<Point> corners;
    for (const Index corner : other.Polygon(p)) {
      corners.push_back(other.points[corner]);
    }
    addPolygon(mesh, corners, 1);
  }
  return mesh;
}

TEST(RepairedDrawing, TouchingBoxesThatLookAlikeAreOne) {
  PolygonMesh mesh = touchingBoxes();
  const RepairCounts counts = repair(mesh, {std::nullopt, {{0, 0}}}).counts;
  EXPECT_EQ(counts.contactFaces, 1U);
  EXPECT_EQ(counts.nonManifoldEdges, 0U);
  expectLines(mesh, boxEdges({0, 0, 0}, {7, 3, 4}));
}

TEST(RepairedDrawing, TouchingBoxesThatLookDifferentKeepTheirJoint) {
  PolygonMesh mesh = touchingBoxes();
  const RepairCounts counts = repair(mesh, {std::nullopt, {{0, 1}}}).counts;
  EXPECT_EQ(counts.contactFaces, 0U);
  EXPECT_EQ(counts.nonManifoldEdges, 4U);
}

TEST(RepairedDrawing, PartsOfOneSurfaceShowWhereTheyMeetUnlessTheyLookAlike) {
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}});
  addPolygon(mesh, {{2, 0, 0}, {5, 0, 0}, {5, 3, 0}, {2, 3, 0}}, 1);
  const Repaired repaired = repair(mesh, {});
  EdgeOptions options;
  options.looks = {{0, 0}};
  EXPECT_EQ(findDrawnEdges(mesh, repaired.edges, options).edges.size(), 6U);
  options.looks = {{0, 1}};
  EXPECT_EQ(findDrawnEdges(mesh, repaired.edges, options).edges.size(), 7U);
}

TEST(RepairedDrawing, BoxGivenByTwoPartsThatLookAlikeStaysWhole) {
  PolygonMesh mesh = makeBox();
  for (std::size_t p = 0; p < 6; ++p) {
    const std::span<const Index> corners = mesh.Polygon(p);
    mesh.Add(std::vector<Index>(corners.begin(), corners.end()), 1);
  }
  EXPECT_EQ(repair(mesh, {std::nullopt, {{0, 0}}}).counts.contactFaces, 0U);
  EXPECT_EQ(mesh.PolygonCount(), 6U);
}

TEST(RepairedDrawing, MoebiusStripHasNoSeam) {
  for (const View& view : allViews()) {
    SCOPED_TRACE(view.name);
    const std::vector<PlanLine> plan = repairedPlan(makeMoebiusStrip(36, 0), view);
    EXPECT_FALSE(plan.empty());
    for (const int first : {1, 9, 20}) {
      EXPECT_EQ(repairedPlan(makeMoebiusStrip(36, first), view), plan) << "seam at " << first;
    }
  }
}

TEST(RepairedDrawing, TwoSidedPlateIsItsOutline) {
  const std::vector<Point> plate = {{0, 0, 0}, {4, 0, 1}, {4, 3, 1}, {0, 3, 0}};
  PolygonMesh mesh;
  addPolygon(mesh, plate);
  addPolygon(mesh, {plate[3], plate[2], plate[1], plate[0]});
  expectLines(
      mesh,
      {{plate[0], plate[1]}, {plate[1], plate[2]}, {plate[2], plate[3]}, {plate[3], plate[0]}});
}

TEST(RepairedDrawing, HippedRoofShowsRidgeAndHips) {
  const PolygonMesh roof = makeHippedRoof();
  std::vector<Line> lines;
  for (const auto& [a, b] : std::vector<std::pair<int, int>>{
           {0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {3, 4}, {4, 5}, {5, 1}, {5, 2}}) {
    lines.push_back(
        {roof.points[static_cast<std::size_t>(a)], roof.points[static_cast<std::size_t>(b)]});
  }
  expectLines(roof, lines);
}

TEST(RepairedDrawing, StairsShowEveryStep) {
  const PolygonMesh stairs = makeStairs(5);
  std::vector<Line> lines;
  for (std::size_t p = 0; p < stairs.PolygonCount(); ++p) {
    const std::span<const Index> corners = stairs.Polygon(p);
    for (std::size_t i = 0; i < corners.size(); ++i) {
      lines.push_back(
          {stairs.points[corners[i]], stairs.points[corners[(i + 1) % corners.size()]]});
    }
  }
  expectLines(stairs, lines);
}

TEST(RepairedDrawing, BodyThatBulgesByLittleShowsItsOutline) {
  // A column that is wider in the middle by less than the plug-in's tolerance of normals tells.
  constexpr int kSides = 12;
  PolygonMesh mesh;
  std::array<std::vector<Point>, 3> rings;
  std::vector<Line> outline;
  for (int i = 0; i < kSides; ++i) {
    const double angle = 2.0 * std::numbers::pi * i / kSides;
    for (std::size_t ring = 0; ring < 3; ++ring) {
      const double radius = ring == 1 ? 1.001 : 1.0;
      rings[ring].push_back(
          {radius * std::cos(angle), radius * std::sin(angle), 10.0 * static_cast<double>(ring)});
    }
  }
  for (std::size_t i = 0; i < kSides; ++i) {
    const std::size_t j = (i + 1) % kSides;
    addPolygon(mesh, {rings[0][i], rings[0][j], rings[1][j], rings[1][i]});
    addPolygon(mesh, {rings[1][i], rings[1][j], rings[2][j], rings[2][i]});
    outline.push_back({rings[1][i], rings[1][j]});
  }
  const std::vector<PlanLine> plan = repairedPlan(mesh, allViews()[0]);
  for (const PlanLine& line : joinedPlan(outline, allViews()[0])) {
    EXPECT_TRUE(std::ranges::binary_search(plan, line));
  }
}

TEST(RepairedDrawing, BentQuadShowsWhereItTurnsAway) {
  const std::vector<Point> corners = {{0, 0, 0}, {2, 0, 1}, {2, 1, 0}, {1.5, 0.2, -1}};
  PolygonMesh mesh;
  addPolygon(mesh, corners);
  std::vector<Line> lines = {{corners[0], corners[2]}};
  for (std::size_t i = 0; i < 4; ++i) {
    lines.push_back({corners[i], corners[(i + 1) % 4]});
  }
  EXPECT_EQ(repairedPlan(mesh, allViews()[0]), joinedPlan(lines, allViews()[0]));
  EXPECT_EQ(repair(mesh, {}).counts.bentPolygonsSplit, 1U);
}

TEST(RepairedDrawing, BentPolygonOfSixCornersShowsWhereItTurnsAway) {
  // A strip that leans over along its middle.
  const std::vector<Point> corners = {{0, 0, 0},      {1, 0, 0.1},    {2, 0, 0},
                                      {2, 0.9, -2.0}, {1, 0.8, -2.1}, {0, 0.9, -0.1}};
  PolygonMesh mesh;
  addPolygon(mesh, corners);
  for (std::size_t i : {2U, 3U, 4U}) {
    mesh.points[i][1] -= 1.5;
  }
  PolygonMesh reversed = mesh;
  EXPECT_GT(repairedPlan(mesh, allViews()[0], kNoCreases).size(), 6U);
  EXPECT_EQ(repair(mesh, {}).counts.bentPolygonsSplit, 1U);
  reversePolygon(reversed, 0);
  EXPECT_EQ(repair(reversed, {}).counts.bentPolygonsSplit, 1U);
}

TEST(ClipEars, CutsAConvexPolygonIntoAFanAroundItsLastCorner) {
  const std::vector<Point> points = {{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}};
  const std::vector<Index> corners = {0, 1, 2, 3, 4};
  EXPECT_EQ(clipEars(points, corners),
            (std::vector<std::array<Index, 3>>{{4, 0, 1}, {4, 1, 2}, {2, 3, 4}}));
}

TEST(ClipEars, KeepsTheNotchOfAConcavePolygonFree) {
  // Seen along x; the notch is at the fourth corner.
  const std::vector<Point> points = {{5, 0, 0}, {5, 4, 0}, {5, 4, 4}, {5, 2, 1}, {5, 0, 4}};
  const std::vector<Index> corners = {0, 1, 2, 3, 4};
  double area = 0.0;
  for (const std::array<Index, 3>& triangle : clipEars(points, corners)) {
    const double part = doubledArea(points, triangle)[0];
    EXPECT_GT(part, 0.0);
    area += part;
  }
  EXPECT_DOUBLE_EQ(area, doubledArea(points, corners)[0]);
}

TEST(ClipEars, GivesUpWhereAPolygonHasNoArea) {
  const std::vector<Point> points = {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}};
  const std::vector<Index> corners = {0, 1, 2, 3};
  EXPECT_TRUE(clipEars(points, corners).empty());
}

TEST(RepairedDrawing, CornerThatClosesATJunctionBendsNoPolygon) {
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {2, 0, 0}, {1, 2, 1}});
  addPolygon(mesh, {{1, 5e-8, -2e-7}, {0, 0, 0}, {0.5, -1, 0}});
  addPolygon(mesh, {{2, 0, 0}, {1, 5e-8, -2e-7}, {1.5, -1, 0}});
  const RepairCounts counts = repair(mesh, {}).counts;
  EXPECT_EQ(counts.tJunctionsClosed, 1U);
  EXPECT_EQ(counts.bentPolygonsSplit, 0U);
}

TEST(RepairedDrawing, ConcaveQuadStaysWhole) {
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {4, -1, 2}, {1, 0, 1}, {4, 1, 4}});
  addPolygon(mesh, {{10, 0, 0}, {14, 0, 4}, {14, 4, 8}, {13, 1, 4}});
  EXPECT_EQ(repair(mesh, {}).counts.bentPolygonsSplit, 0U);
}

TEST(RepairedDrawing, CylinderOf24SegmentsShowsRimsAndSilhouetteOnly) {
  const View& front = allViews()[2];
  ASSERT_EQ(front.name, "front");
  EXPECT_EQ(repairedPlan(makeCylinder(24), front), joinedPlan({{{{-1, 0, 0}, {1, 0, 0}}},
                                                               {{{-1, 0, 4}, {1, 0, 4}}},
                                                               {{{-1, 0, 0}, {-1, 0, 4}}},
                                                               {{{1, 0, 0}, {1, 0, 4}}}},
                                                              front));
  // Two rims, and two lines from one to the other.
  EXPECT_EQ(repairedPlan(makeCylinder(24), allViews()[7]).size(), 24U + 24U + 2U);
}

TEST(RepairedDrawing, SphereOf32SegmentsShowsItsSilhouetteOnly) {
  const PolygonMesh sphere = makeSphere(32, 16);
  EXPECT_EQ(repairedPlan(sphere, allViews()[0]).size(), 32U);
  for (const View& view : allViews()) {
    SCOPED_TRACE(view.name);
    EXPECT_EQ(repairedPlan(sphere, view), repairedPlan(sphere, view, kNoCreases));
  }
}

}  // namespace
