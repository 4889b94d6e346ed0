// The stages of repair against the reference implementation, on random meshes.
#include <gtest/gtest.h>

#include <random>

#include "mesh/cleaning.h"
#include "mesh/drawn_edges.h"
#include "mesh/duplicates.h"
#include "mesh/orientation.h"
#include "mesh/repair.h"
#include "mesh/t_junctions.h"
#include "mesh/weld.h"
#include "tests/mesh/plan_drawing.h"
#include "tests/mesh/reference_mesh.h"

using namespace dxf2d::mesh;

namespace {

constexpr double kDistance = 0.01;

// Points on a small grid, most a little off it, and polygons between any of them.
class RandomMeshes {
 public:
  explicit RandomMeshes(unsigned seed) : random_(seed) {}

  PolygonMesh Next() {
    PolygonMesh mesh;
    const int side = Pick(2, 5);
    const bool isNoisy = Pick(0, 1) == 1;
    for (int i = Pick(4, 60); i > 0; --i) {
      Point point;
      for (double& coordinate : point) {
        coordinate = Pick(0, side) + (isNoisy ? 0.3 * kDistance * Pick(-1, 1) : 0.0);
      }
      mesh.points.push_back(point);
    }
    const int last = static_cast<int>(mesh.points.size()) - 1;
    for (int i = Pick(1, 60); i > 0; --i) {
      std::vector<Index> corners;
      for (int k = Pick(0, 3) == 0 ? Pick(1, 6) : 3; k > 0; --k) {
        corners.push_back(static_cast<Index>(Pick(0, last)));
      }
      mesh.Add(corners, static_cast<Index>(Pick(0, 2)));
    }
    for (int i = Pick(-5, 5); i > 0; --i) {
      mesh.segments.push_back({static_cast<Index>(Pick(0, last)), static_cast<Index>(Pick(0, last)),
                               static_cast<Index>(Pick(0, 2))});
    }
    return mesh;
  }

 private:
  int Pick(int least, int greatest) {
    return std::uniform_int_distribution<int>(least, greatest)(random_);
  }

  std::mt19937 random_;
};

constexpr int kMeshes = 3000;

TEST(MeshDifferential, Weld) {
  RandomMeshes meshes(1);
  for (int i = 0; i < kMeshes; ++i) {
    PolygonMesh fast = meshes.Next();
    PolygonMesh reference = fast;
    const double distance = i % 3 == 0 ? 0.0 : kDistance;
    ASSERT_EQ(weld(fast, UsedPoints(fast), distance), referenceWeld(reference, distance)) << i;
    ASSERT_EQ(fast, reference) << i;
  }
}

TEST(MeshDifferential, StagesOnWeldedMeshes) {
  RandomMeshes meshes(2);
  std::size_t closed = 0;
  std::size_t duplicates = 0;
  for (int i = 0; i < kMeshes; ++i) {
    PolygonMesh fast = meshes.Next();
    weld(fast, UsedPoints(fast), kDistance);
    dropDegenerate(fast, kDistance);
    PolygonMesh reference = fast;
    duplicates += dropDuplicatePolygons(fast, EdgeTable(fast)).dropped;
    referenceDropDuplicates(reference);
    ASSERT_EQ(fast, reference) << i;
    const std::size_t count = closeTJunctions(fast, EdgeTable(fast), kDistance).pointsInserted;
    ASSERT_EQ(count, referenceCloseTJunctions(reference, kDistance)) << i;
    ASSERT_EQ(fast, reference) << i;
    closed += count;
    EdgeTable edges(fast);
    orient(fast, edges);
    referenceOrient(reference);
    ASSERT_EQ(fast, reference) << i;
  }
  EXPECT_GT(closed, 1000U);
  EXPECT_GT(duplicates, 1000U);
}

TEST(MeshDifferential, EdgeTable) {
  RandomMeshes meshes(3);
  for (int i = 0; i < kMeshes; ++i) {
    const PolygonMesh mesh = meshes.Next();
    ReferenceEdges edges;
    EdgeTable(mesh).ForEachEdge([&](Index a, Index b, std::span<const EdgeUse> uses) {
      for (const EdgeUse& use : uses) {
        const int direction = use.IsBothWays() ? 0 : use.IsForward() ? 1 : -1;
        const bool isNew = edges[std::pair(a, b)].emplace(use.Polygon(), direction).second;
        ASSERT_TRUE(isNew);
      }
    });
    ASSERT_EQ(edges, referenceEdges(mesh)) << i;
  }
}

// Whole repairs, and none: then neighbors disagree and surfaces cross.
TEST(MeshDifferential, DrawnEdges) {
  RandomMeshes meshes(4);
  for (int i = 0; i < kMeshes; ++i) {
    PolygonMesh mesh = meshes.Next();
    if (i % 2 == 0) {
      repair(mesh, {});
    } else {
      weld(mesh, UsedPoints(mesh), 0.0);
      dropDegenerate(mesh, 0.0);
    }
    const double degrees = i % 3 == 0 ? kNoCreases : kDefaultCreaseDegrees;
    const DrawnEdges reference = referenceDrawnEdges(mesh, degrees);
    const DrawnEdges drawn = findDrawnEdges(mesh, EdgeTable(mesh), {degrees, 0.0});
    ASSERT_EQ(drawn.edges, reference.edges) << i;
    ASSERT_EQ(drawn.starts, reference.starts) << i;
    ASSERT_EQ(segmentsOfPlugin(mesh, drawn), segmentsOf(mesh, drawn)) << i;
  }
}

TEST(MeshDifferential, SecondRepairChangesNothingOnceNoTJunctionCloses) {
  RandomMeshes meshes(5);
  int compared = 0;
  for (int i = 0; i < kMeshes; ++i) {
    PolygonMesh mesh = meshes.Next();
    if (repair(mesh, {}).counts.tJunctionsClosed != 0) {
      continue;
    }
    PolygonMesh again = mesh;
    const RepairCounts counts = repair(again, {}).counts;
    ASSERT_EQ(again, mesh) << i;
    ASSERT_EQ(counts.polygonsFlipped + counts.piecesTurnedOutward, 0U) << i;
    ++compared;
  }
  EXPECT_GT(compared, 300);
}

}  // namespace
