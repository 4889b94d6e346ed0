// What threads find together is what one finds alone, in the same order.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

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

}  // namespace
}  // namespace dxf2d::projection
