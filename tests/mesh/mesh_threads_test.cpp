// What threads make of a mesh is what one makes of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "mesh/drawn_edges.h"
#include "mesh/pieces.h"
#include "mesh/point_collector.h"
#include "mesh/repair.h"
#include "tests/mesh/random_meshes.h"
#include "tests/mesh/sample_meshes.h"

using namespace dxf2d::mesh;

namespace {

constexpr std::size_t kThreads[] = {2, 3, 8, 17};

// All that is found out about a mesh.
struct Findings {
  PolygonMesh mesh;
  RepairCounts counts;
  std::vector<std::pair<Index, Index>> edges;
  DrawnEdges drawn;
  std::vector<DrawnEdge> noise;
  // Repair may move points where edges that show end.
  PolygonMesh moved;

  Findings(PolygonMesh given, std::size_t threads) : mesh(std::move(given)) {
    RepairOptions options;
    options.threads = threads;
    const Repaired repaired = repair(mesh, options);
    counts = repaired.counts;
    repaired.edges.ForEachEdge([&](Index a, Index b, std::span<const EdgeUse> uses) {
      for (const EdgeUse& use : uses) {
        edges.emplace_back(a, b);
        edges.emplace_back(use.Polygon(),
                           (use.IsForward() ? 1U : 0U) + (use.IsBothWays() ? 2U : 0U));
      }
    });
    EdgeOptions edgeOptions;
    edgeOptions.threads = threads;
    edgeOptions.dropsNoise = true;
    edgeOptions.planDistance = repaired.distance;
    noise = findFacetNoise(mesh, repaired.edges, edgeOptions);
    moved = mesh;
    drawn = findDrawnEdges(moved, repaired.edges, edgeOptions);
  }
};

void expectTheSameWithThreads(const PolygonMesh& mesh) {
  const Findings alone(mesh, 1);
  for (const std::size_t threads : kThreads) {
    const Findings together(mesh, threads);
    ASSERT_EQ(together.mesh, alone.mesh) << threads;
    ASSERT_EQ(together.counts, alone.counts) << threads;
    ASSERT_EQ(together.edges, alone.edges) << threads;
    ASSERT_EQ(together.noise, alone.noise) << threads;
    ASSERT_EQ(together.moved, alone.moved) << threads;
    ASSERT_EQ(together.drawn.edges, alone.drawn.edges) << threads;
    ASSERT_EQ(together.drawn.starts, alone.drawn.starts) << threads;
  }
}

TEST(MeshInThreads, OfRandomMeshesIsTheSame) {
  RandomMeshes meshes(6);
  for (int i = 0; i < 25; ++i) {
    ASSERT_NO_FATAL_FAILURE(expectTheSameWithThreads(meshes.Next())) << i;
  }
}

// Pieces of all sorts one beside the other, some of them inside out, some with wrong windings.
TEST(MeshInThreads, OfManyPiecesIsTheSame) {
  std::mt19937 random(7);
  PolygonMesh mesh;
  for (int i = 0; i < 40; ++i) {
    const double x = 3.0 * static_cast<double>(random() % 20);
    PolygonMesh piece = i % 3 == 0 ? makeCylinder(12) : makeBox({x, 0, 0}, {x + 1, 2, 3});
    for (std::size_t p = 0; p < piece.PolygonCount(); ++p) {
      std::vector<Index> corners(piece.Polygon(p).begin(), piece.Polygon(p).end());
      if (random() % 5 == 0) {
        std::ranges::reverse(corners);
      }
      for (Index& corner : corners) {
        mesh.points.push_back(piece.points[corner]);
        corner = static_cast<Index>(mesh.points.size() - 1);
      }
      mesh.Add(corners, 0);
    }
  }
  expectTheSameWithThreads(mesh);
}

TEST(MeshInThreads, OfNothingIsTheSame) { expectTheSameWithThreads(PolygonMesh()); }

// A contradiction, wherever it is met first, makes a piece one that cannot be oriented.
TEST(MeshInThreads, AMoebiusStripAmongOthersStaysAsItIs) {
  PolygonMesh mesh = makeMoebiusStrip(24, 0);
  const std::size_t count = mesh.PolygonCount();
  for (int i = 0; i < 3; ++i) {
    addPolygon(mesh, {{9.0 + i, 0, 0}, {10.0 + i, 0, 0}, {10.0 + i, 1, 0}, {9.0 + i, 1, 0}});
  }
  ASSERT_GT(mesh.PolygonCount(), count);
  EXPECT_EQ(Findings(mesh, 1).counts.nonOrientablePieces, 1U);
  expectTheSameWithThreads(mesh);
}

TEST(MeshInThreads, CollectWhatOneCollects) {
  std::mt19937 random(8);
  for (const std::size_t count : {0U, 1U, 5U, 200U, 5000U}) {
    std::vector<Point> corners(count);
    for (Point& corner : corners) {
      for (double& coordinate : corner) {
        coordinate = -0.25 * static_cast<double>(random() % 9);
      }
    }
    const auto makePoints = [&](std::size_t begin, std::size_t size, Point* out) {
      std::copy_n(corners.begin() + static_cast<std::ptrdiff_t>(begin), size, out);
    };
    // One that is there already is not looked at.
    std::vector<Point> points = {{0, 0, 0}};
    std::vector<Index> numbers(count);
    collectPoints(count, 1, makePoints, points, numbers.data());
    for (const std::size_t threads : kThreads) {
      std::vector<Point> others = {{0, 0, 0}};
      std::vector<Index> otherNumbers(count);
      collectPoints(count, threads, makePoints, others, otherNumbers.data());
      EXPECT_EQ(others, points) << threads;
      EXPECT_EQ(otherNumbers, numbers) << threads;
    }
  }
}

}  // namespace
