// What threads find together is what one finds alone, in the same order.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "projection/group_joining.h"
#include "projection/union_outline.h"
#include "projection/visibility.h"
#include "tests/projection/sample_scenes.h"

namespace dxf2d::projection {
namespace {

// What is found in a scene.
struct Findings {
  std::vector<CandidateEdge> edges;
  VisibleLines lines;
  UnionOutline outline;

  Findings(const Scene& scene, std::size_t threads) {
    // However little work there is.
    const Threading threading{threads, 0};
    const Tolerances tolerances = tolerancesFor(boundsOf(scene));
    edges = findCandidateEdges(scene, tolerances, kDefaultCreaseDegrees, {}, threading);
    lines = findVisibleLines(scene, edges, tolerances, threading);
    const Tolerances coarser = outlineTolerancesFor(boundsOf(scene));
    std::vector<Index> groups(scene.parts.empty() ? 1 : *std::ranges::max_element(scene.parts) + 1);
    for (Index part = 0; part < groups.size(); ++part) {
      groups[part] = part / 2;
    }
    outline = findUnionOutline(
        scene, findCandidateEdges(scene, coarser, kDefaultCreaseDegrees, {}, threading), groups,
        coarser, threading);
  }
};

void expectTheSameWithThreads(const Scene& scene) {
  const Findings alone(scene, 1);
  for (const std::size_t threads : {2U, 3U, 8U, 17U}) {
    const Findings together(scene, threads);
    EXPECT_EQ(together.edges, alone.edges) << threads;
    EXPECT_EQ(together.lines.pieces, alone.lines.pieces) << threads;
    EXPECT_EQ(together.lines.piercings, alone.lines.piercings) << threads;
    EXPECT_EQ(together.outline.loops.points, alone.outline.loops.points) << threads;
    EXPECT_EQ(together.outline.loops.starts, alone.outline.loops.starts) << threads;
    EXPECT_EQ(together.outline.loops.groups, alone.outline.loops.groups) << threads;
    EXPECT_EQ(together.outline.droppedPieces, alone.outline.droppedPieces) << threads;
  }
}

TEST(ProjectionInThreads, OfSampleScenesIsTheSame) {
  for (const SampleKind kind :
       {SampleKind::kPiledBoxes, SampleKind::kBoxes, SampleKind::kSpheres, SampleKind::kTerrain}) {
    expectTheSameWithThreads(sampleScene(kind, 6000, 3));
  }
}

TEST(ProjectionInThreads, OfSmallScenesIsTheSame) {
  std::mt19937 random(5);
  expectTheSameWithThreads(Scene());
  for (int i = 1; i < 40; ++i) {
    expectTheSameWithThreads(randomSoup(random, i, 3));
  }
}

// A mesh of triangles; one with a polygon, a line, noise and a point that cannot be used.
TEST(ProjectionInThreads, AssembleWhatOneAssembles) {
  mesh::PolygonMesh plain;
  std::mt19937 random(9);
  for (Index i = 0; i < 200; ++i) {
    plain.points.push_back({0.5 * static_cast<double>(random() % 50),
                            0.25 * static_cast<double>(random() % 50), 0.125 * i});
  }
  for (Index i = 0; i < 300; ++i) {
    plain.Add(std::array<Index, 3>{i % 200, (7 * i + 1) % 200, (3 * i + 2) % 200}, i % 4);
  }
  plain.segments = {{3, 5, 1}};
  mesh::PolygonMesh mixed = plain;
  mixed.points[17][0] = 1e101;
  mixed.Add(std::array<Index, 4>{0, 1, 2, 3}, 0);
  const std::vector<mesh::DrawnEdge> noise = {{1, 9, 0, mesh::EdgeKind::kCrease},
                                              {8, 2, 0, mesh::EdgeKind::kSilhouette}};
  const Placement placement{1, 2, 3, 0.6, 0.8};
  const std::vector<PlacedMesh> meshes = {{&plain, placement, 0, 0, noise},
                                          {&mixed, placement, 4, 1e-6, noise},
                                          {&plain, {}, 8, 0, {}}};
  const Scene alone = assembleScene(meshes);
  // Without those of the point that cannot be used, and with two of the polygon.
  ASSERT_EQ(alone.triangles.size(), 3 * 300U - 6 + 2);
  for (const std::size_t threads : {2U, 3U, 8U, 17U}) {
    const Scene together = assembleScene(meshes, {threads, 0});
    EXPECT_EQ(together.points, alone.points) << threads;
    EXPECT_EQ(together.triangles, alone.triangles) << threads;
    EXPECT_EQ(together.parts, alone.parts) << threads;
    EXPECT_EQ(together.polygonEdges, alone.polygonEdges) << threads;
    EXPECT_EQ(together.noise, alone.noise) << threads;
    EXPECT_EQ(together.deviations, alone.deviations) << threads;
    EXPECT_EQ(together.lines.size(), alone.lines.size()) << threads;
    EXPECT_EQ(boundsOf(together, {threads, 0}).low, boundsOf(alone).low) << threads;
    EXPECT_EQ(boundsOf(together, {threads, 0}).high, boundsOf(alone).high) << threads;
  }
}

TEST(ProjectionInThreads, JoinWhatOneJoins) {
  std::mt19937 random(10);
  for (const std::uint64_t groups : {1U, 2U, 5U, 100U}) {
    std::vector<GroupedSegment> segments;
    for (int i = 0; i < 2000; ++i) {
      const auto any = [&] { return static_cast<double>(random() % 30); };
      const PlanPoint from = {any(), any()};
      segments.push_back({from, {from[0] + 1, from[1] + any() / 30}, 7 * (random() % groups)});
      segments.push_back({from, {from[0], from[1] + 1}, 7 * (random() % groups)});
    }
    // Few of these, but far behind all others.
    segments.push_back({{0, 0}, {1, 1}, 900});
    const Polylines alone = joinByGroup(segments, 1e-6, 1);
    EXPECT_TRUE(std::ranges::is_sorted(alone.groups));
    for (const std::size_t threads : {2U, 3U, 8U, 17U}) {
      const Polylines together = joinByGroup(segments, 1e-6, threads);
      EXPECT_EQ(together.points, alone.points) << threads;
      EXPECT_EQ(together.starts, alone.starts) << threads;
      EXPECT_EQ(together.groups, alone.groups) << threads;
    }
  }
  EXPECT_EQ(joinByGroup({}, 1e-6, 3).Count(), 0U);
}

}  // namespace
}  // namespace dxf2d::projection
