#include "projection/section.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tests/projection/projected_lines.h"
#include "tests/projection/sample_scenes.h"

namespace dxf2d::projection {
namespace {

constexpr double kWeld = 1e-6;

TEST(CutScene, BoxHasItsCutLoopAndNoBorderThere) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 4});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_TRUE(section.lines.polylines.IsClosed(0));
  EXPECT_EQ(section.lines.polylines.At(0).size(), 5U);
  EXPECT_EQ(section.lines.openEnds, 0U);
  EXPECT_EQ(boundsOf(section.below).high[2], 1);
  const ProjectedScene below(section.below, section.cuts);
  EXPECT_TRUE(std::ranges::none_of(
      below.edges, [](const CandidateEdge& edge) { return edge.kind == EdgeKind::kBorder; }));
  for (const ProjectedLine& line : below.Visible()) {
    EXPECT_EQ(line.kind, EdgeKind::kCut);
  }
  EXPECT_NEAR(lengthOf(below.Visible()), 6, 1e-12);
}

TEST(CutScene, CutBodyHidesItsInside) {
  // A tub that widens upwards: cut open, one would see its bottom.
  mesh::PolygonMesh mesh;
  mesh.points = {{1, 1, 0}, {2, 1, 0}, {2, 2, 0}, {1, 2, 0},
                 {0, 0, 2}, {3, 0, 2}, {3, 3, 2}, {0, 3, 2}};
  mesh.Add(std::array<Index, 4>{3, 2, 1, 0}, 0);
  mesh.Add(std::array<Index, 4>{4, 5, 6, 7}, 0);
  for (Index i = 0; i < 4; ++i) {
    mesh.Add(std::array<Index, 4>{i, (i + 1) % 4, 4 + (i + 1) % 4, 4 + i}, 0);
  }
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.unfilledBodies, 0U);
  const ProjectedScene below(section.below, section.cuts);
  EXPECT_FALSE(isDrawn(below.Visible(), 1.5, 1));
  EXPECT_TRUE(isDrawn(below.Visible(), 1.5, 0.5));
  EXPECT_NEAR(lengthOf(below.Visible()), 8, 1e-9);
}

TEST(CutScene, PipeStaysOpen) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 4, 4});
  addBox(mesh, {1, 1, -1}, {3, 3, 5});
  addPolygon(mesh, {{1.5, 2, 0.5}, {2.5, 2, 0.5}, {2.5, 2.5, 0.5}, {1.5, 2.5, 0.5}}, 1);
  const Section section = cutScene(sceneOf(mesh), 2, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 2U);
  const ProjectedScene below(section.below, section.cuts);
  EXPECT_TRUE(isDrawn(below.Visible(), 2, 2));
}

TEST(CutScene, BodyWithEveryFaceTwiceIsFilled) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 4});
  addBox(mesh, {0, 0, 0}, {2, 1, 4});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_NEAR(lengthOf(ProjectedScene(section.below, section.cuts).Visible()), 12, 1e-12);
}

TEST(CutScene, FaceInThePlaneIsAboveIt) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 1});
  addBox(mesh, {5, 0, 1}, {6, 1, 2}, 1);
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  // The first box is cut along its top, which is gone; of the second nothing is left.
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_EQ(section.lines.polylines.groups[0], 0U);
  EXPECT_EQ(boundsOf(section.below).high, (Point{2, 1, 1}));
}

TEST(CutScene, WallsThatShareAFaceHaveALoopEach) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 4}, 0);
  addBox(mesh, {2, 0, 0}, {3, 1, 4}, 1);
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 2U);
  EXPECT_TRUE(section.lines.polylines.IsClosed(0));
  EXPECT_TRUE(section.lines.polylines.IsClosed(1));
}

TEST(CutScene, WallBetweenRoomsOfOnePartLeavesNoOpenEnd) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 4});
  addBox(mesh, {2, 0, 0}, {3, 1, 4});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.lines.openEnds, 0U);
  ASSERT_EQ(section.lines.polylines.Count(), 2U);
}

TEST(CutScene, WindingDoesNotMatter) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 4});
  Scene scene = sceneOf(mesh);
  for (std::size_t t = 0; t < scene.triangles.size(); t += 3) {
    std::swap(scene.triangles[t][0], scene.triangles[t][1]);
  }
  const Section section = cutScene(scene, 1, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_TRUE(section.lines.polylines.IsClosed(0));
}

TEST(CutScene, PointsApartByLessThanTheWeldDistanceAreOne) {
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {1, 0, 0}, {1, 0, 2}, {0, 0, 2}});
  addPolygon(mesh, {{1, 5e-7, 0}, {1, 1, 0}, {1, 1, 2}, {1, 5e-7, 2}});
  addPolygon(mesh, {{1, 1, 0}, {0, 3e-7, 0}, {0, 3e-7, 2}, {1, 1, 2}});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_TRUE(section.lines.polylines.IsClosed(0));
}

TEST(CutScene, OpenEndsAreCounted) {
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {1, 0, 0}, {1, 0, 2}, {0, 0, 2}});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  EXPECT_FALSE(section.lines.polylines.IsClosed(0));
  EXPECT_EQ(section.lines.openEnds, 2U);
  EXPECT_EQ(section.unfilledBodies, 1U);
}

TEST(CutScene, BridgesDoNotRunBackAlongAStraightLine) {
  // Two walls side by side that are short for their distance: their own ends are the nearest.
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {0, 1, 0}, {0, 1, 2}, {0, 0, 2}});
  addPolygon(mesh, {{8, 0, 0}, {8, 1, 0}, {8, 1, 2}, {8, 0, 2}});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.unfilledBodies, 1U);
  EXPECT_EQ(std::ranges::count(section.cuts, EdgeKind::kBridge, &CandidateEdge::kind), 0);
  EXPECT_EQ(section.below.triangles.size(), 6U);  // what is left of two walls, without a cap
}

TEST(CutScene, SmallGapsAreBridgedForFilling) {
  // A wall of 10 by 1 without its ends: two lines, a filled area and four open ends.
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {10, 0, 0}, {10, 0, 2}, {0, 0, 2}});
  addPolygon(mesh, {{0, 1, 0}, {10, 1, 0}, {10, 1, 2}, {0, 1, 2}});
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.lines.openEnds, 4U);
  EXPECT_EQ(section.unfilledBodies, 0U);
  // What the filled area hides begins there, too.
  EXPECT_EQ(std::ranges::count(section.cuts, EdgeKind::kBridge, &CandidateEdge::kind), 2);
  double area = 0;
  for (const auto& [a, b, c] : section.below.triangles) {
    const auto& points = section.below.points;
    if (points[a][2] == 1 && points[b][2] == 1 && points[c][2] == 1) {
      area += std::abs((points[b][0] - points[a][0]) * (points[c][1] - points[a][1]) -
                       (points[b][1] - points[a][1]) * (points[c][0] - points[a][0])) /
              2;
    }
  }
  EXPECT_NEAR(area, 10, 1e-9);
}

TEST(CutScene, CrossingLoopsAreFilledWhereTheyAre) {
  // Two prisms of one body whose loops cross, with no corner at the height of a crossing.
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 10, 2});
  const std::vector<PlanPoint> wedge = {{-3, 1}, {9, 5}, {-3, 9}};
  for (std::size_t i = 0; i < 3; ++i) {
    const PlanPoint& a = wedge[i];
    const PlanPoint& b = wedge[(i + 1) % 3];
    addPolygon(mesh, {{a[0], a[1], 0}, {b[0], b[1], 0}, {b[0], b[1], 2}, {a[0], a[1], 2}});
  }
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  EXPECT_EQ(section.unfilledBodies, 0U);
  const auto covered = [&](double x, double y) {
    int count = 0;
    for (const auto& [a, b, c] : section.below.triangles) {
      const auto& p = section.below.points;
      const auto side = [&](Index from, Index to) {
        return (p[to][0] - p[from][0]) * (y - p[from][1]) -
                   (p[to][1] - p[from][1]) * (x - p[from][0]) >
               0;
      };
      const bool isCap = p[a][2] == 1 && p[b][2] == 1 && p[c][2] == 1;
      count += isCap && side(a, b) == side(b, c) && side(b, c) == side(c, a) ? 1 : 0;
    }
    return count;
  };
  for (double x = -2.9; x < 9; x += 0.37) {
    for (double y = 0.1; y < 10; y += 0.41) {
      const bool isInBox = x > 0 && x < 4;
      const bool isInWedge = std::abs(y - 5) < 4 - (x + 3) / 3;
      ASSERT_EQ(covered(x, y), isInBox != isInWedge ? 1 : 0) << x << ' ' << y;
    }
  }
}

TEST(CutScene, LinesAreClipped) {
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {4, 0, 4}, {9, 9, 9}};
  mesh.segments = {{0, 1, 0}, {1, 2, 0}};
  const Section section = cutScene(sceneOf(mesh), 1, kWeld);
  ASSERT_EQ(section.below.lines.size(), 1U);
  EXPECT_EQ(section.below.points[section.below.lines[0].to], (Point{1, 0, 1}));
}

TEST(CutScene, SphereIsCutAlongItsCircle) {
  const Scene scene = sampleScene(SampleKind::kSpheres, 2500, 3);
  const Bounds bounds = boundsOf(scene);
  const double middle = (bounds.low[2] + bounds.high[2]) / 2;
  const Section section = cutScene(scene, middle, kWeld);
  ASSERT_EQ(section.lines.polylines.Count(), 1U);
  ASSERT_TRUE(section.lines.polylines.IsClosed(0));
  const double radius = (bounds.high[2] - bounds.low[2]) / 2;
  EXPECT_NEAR(std::abs(areaOf(section.lines.polylines)), 3.1416 * radius * radius,
              0.02 * radius * radius);
}

TEST(CutScene, EveryLoopOfClosedBodiesIsClosed) {
  const Scene scene = sampleScene(SampleKind::kBoxes, 12000, 3);
  const Section section = cutScene(scene, 3, kWeld);
  EXPECT_GT(section.lines.polylines.Count(), 50U);
  EXPECT_EQ(section.lines.openEnds, 0U);
  for (std::size_t i = 0; i < section.lines.polylines.Count(); ++i) {
    EXPECT_TRUE(section.lines.polylines.IsClosed(i));
  }
}

TEST(CutScene, NothingGivesNothing) {
  EXPECT_TRUE(cutScene(Scene(), 1, 0).below.triangles.empty());
}

}  // namespace
}  // namespace dxf2d::projection
