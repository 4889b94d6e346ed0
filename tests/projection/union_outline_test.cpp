#include "projection/union_outline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

#include "tests/projection/projected_lines.h"
#include "tests/projection/reference_projection.h"
#include "tests/projection/sample_scenes.h"

namespace dxf2d::projection {
namespace {

// Every loop closed, of three points or more, and no segment twice.
void expectProper(const Polylines& loops) {
  std::set<std::pair<PlanPoint, PlanPoint>> segments;
  for (std::size_t i = 0; i < loops.Count(); ++i) {
    ASSERT_TRUE(loops.IsClosed(i));
    const auto loop = loops.At(i);
    ASSERT_GE(loop.size(), 4U);
    for (std::size_t j = 0; j + 1 < loop.size(); ++j) {
      ASSERT_NE(loop[j], loop[j + 1]);
      ASSERT_TRUE(segments.insert(std::minmax(loop[j], loop[j + 1])).second);
    }
  }
}

TEST(FindUnionOutline, OverlappingBoxesHaveOneLoop) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 4, 1});
  addBox(mesh, {3, 1, 2}, {6, 3, 3}, 1);
  const UnionOutline outline = ProjectedScene(sceneOf(mesh)).Outline();
  expectProper(outline.loops);
  ASSERT_EQ(outline.loops.Count(), 1U);
  EXPECT_EQ(outline.loops.At(0).size(), 9U);
  EXPECT_NEAR(areaOf(outline.loops), 20, 1e-12);
}

TEST(FindUnionOutline, FrameHasItsHole) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {6, 1, 1});
  addBox(mesh, {0, 5, 0}, {6, 6, 1});
  addBox(mesh, {0, 1, 0}, {1, 5, 1});
  addBox(mesh, {5, 0.5, 1}, {6, 5.5, 2});
  const UnionOutline outline = ProjectedScene(sceneOf(mesh)).Outline();
  expectProper(outline.loops);
  ASSERT_EQ(outline.loops.Count(), 2U);
  EXPECT_NEAR(areaOf(outline.loops), 20, 1e-12);
  EXPECT_EQ(windingAround(outline.loops, 3, 3), 0);
  EXPECT_EQ(outline.droppedPieces, 0U);
}

TEST(FindUnionOutline, SquaresThatTouchAtACornerHaveALoopEach) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {1, 1, 1});
  addBox(mesh, {1, 1, 0}, {2, 2, 1});
  const UnionOutline outline = ProjectedScene(sceneOf(mesh)).Outline();
  expectProper(outline.loops);
  EXPECT_EQ(outline.loops.Count(), 2U);
}

TEST(FindUnionOutline, GroupsHaveOutlinesOfTheirOwn) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 4, 1}, 0);
  addBox(mesh, {3, 1, 2}, {6, 3, 3}, 1);
  addBox(mesh, {6, 1, 2}, {7, 3, 3}, 2);
  const ProjectedScene scene(sceneOf(mesh));
  const std::vector<Index> groups = {1, 0, 0};
  const UnionOutline outline = findUnionOutline(scene.scene, scene.edges, groups, scene.tolerances);
  expectProper(outline.loops);
  ASSERT_EQ(outline.loops.Count(), 2U);
  EXPECT_EQ(outline.loops.groups, (std::vector<std::uint64_t>{0, 1}));
  EXPECT_NEAR(areaOf(outline.loops), 16 + 8, 1e-12);
}

TEST(FindUnionOutline, AgreesWithAllTrianglesAtRandomPoints) {
  for (const SampleKind kind :
       {SampleKind::kPiledBoxes, SampleKind::kBoxes, SampleKind::kSpheres, SampleKind::kTerrain}) {
    const ProjectedScene scene(sampleScene(kind, 3000, 9));
    const UnionOutline outline = scene.Outline();
    expectProper(outline.loops);
    EXPECT_EQ(outline.droppedPieces, 0U);
    const Bounds bounds = boundsOf(scene.scene);
    std::mt19937 random(5);
    int wrong = 0;
    for (int i = 0; i < 1000; ++i) {
      const auto between = [&](std::size_t axis) {
        return bounds.low[axis] + static_cast<double>(random()) / 4294967296.0 *
                                      (bounds.high[axis] - bounds.low[axis]);
      };
      const double x = between(0);
      const double y = between(1);
      const Seen cover = coverAt(scene.scene, x, y, 2 * scene.tolerances.weld);
      const int winding = windingAround(outline.loops, x, y);
      wrong += (cover == Seen::kVisible && winding != 1) || (cover == Seen::kHidden && winding != 0)
                   ? 1
                   : 0;
    }
    EXPECT_LE(wrong, 1) << static_cast<int>(kind);
  }
}

// Boxes that pierce each other, turned about x and then about z: two faces of each stand upright,
// up to single precision, to which all points are rounded.
Scene boxesOnEdge(int count) {
  std::mt19937 random(3);
  const auto share = [&] { return static_cast<double>(random()) / 4294967296.0; };
  mesh::PolygonMesh mesh;
  const double side = std::sqrt(count);
  for (int i = 0; i < count; ++i) {
    const std::size_t first = mesh.points.size();
    const Point half = {.2 + .8 * share(), .2 + .8 * share(), .2 + .8 * share()};
    addBox(mesh, {-half[0], -half[1], -half[2]}, half);
    const double a = 6 * share();
    const double b = 6 * share();
    const Point center = {side * share(), side * share(), 6 * share()};
    for (std::size_t p = first; p < mesh.points.size(); ++p) {
      const Point q = mesh.points[p];
      const double y = std::cos(a) * q[1] - std::sin(a) * q[2];
      const double z = std::sin(a) * q[1] + std::cos(a) * q[2];
      mesh.points[p] = {static_cast<float>(std::cos(b) * q[0] - std::sin(b) * y + center[0]),
                        static_cast<float>(std::sin(b) * q[0] + std::cos(b) * y + center[1]),
                        static_cast<float>(z + center[2])};
    }
  }
  return sceneOf(mesh);
}

TEST(FindUnionOutline, UprightFacesOfSinglePrecisionLeaveNoGap) {
  const UnionOutline outline = ProjectedScene(boxesOnEdge(500)).Outline();
  expectProper(outline.loops);
  EXPECT_EQ(outline.droppedPieces, 0U);
}

TEST(FindUnionOutline, AgreesWithAllTrianglesOnRandomSoups) {
  std::mt19937 random(23);
  for (int round = 0; round < 600; ++round) {
    const ProjectedScene scene(randomSoup(random, 1 + round % 24, 3));
    const UnionOutline outline = scene.Outline();
    expectProper(outline.loops);
    ASSERT_EQ(outline.droppedPieces, 0U) << "round " << round;
    for (int i = 0; i < 60; ++i) {
      const double x = static_cast<double>(random() % 7000) / 1000 + 0.0003;
      const double y = static_cast<double>(random() % 7000) / 1000 + 0.0007;
      const Seen cover = coverAt(scene.scene, x, y, 1e-5);
      const int winding = windingAround(outline.loops, x, y);
      ASSERT_FALSE(cover == Seen::kVisible && winding != 1)
          << "round " << round << " at " << x << ' ' << y << " winding " << winding;
      ASSERT_FALSE(cover == Seen::kHidden && winding != 0)
          << "round " << round << " at " << x << ' ' << y << " winding " << winding;
    }
  }
}

}  // namespace
}  // namespace dxf2d::projection
