// The stages of repair against the reference implementation, on random meshes.
#include <gtest/gtest.h>

#include "mesh/cleaning.h"
#include "mesh/drawn_edges.h"
#include "mesh/duplicates.h"
#include "mesh/orientation.h"
#include "mesh/repair.h"
#include "mesh/t_junctions.h"
#include "mesh/weld.h"
#include "tests/mesh/plan_drawing.h"
#include "tests/mesh/random_meshes.h"
#include "tests/mesh/reference_mesh.h"

using namespace dxf2d::mesh;

namespace {

constexpr double kDistance = RandomMeshes::kDistance;

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
