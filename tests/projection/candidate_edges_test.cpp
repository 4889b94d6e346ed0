#include "projection/candidate_edges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <utility>

#include "mesh/edge_kinds.h"
#include "mesh/edge_table.h"
#include "tests/projection/sample_scenes.h"

namespace dxf2d::projection {
namespace {

using Ends = std::pair<Index, Index>;

// The edges that the mesh room shows of a mesh, but for those that are points in plan.
std::set<Ends> edgesOfMesh(const mesh::PolygonMesh& mesh, double creaseDegrees, bool creases) {
  const mesh::EdgeClassifier classifier(mesh, creaseDegrees);
  std::set<Ends> edges;
  mesh::EdgeTable(mesh).ForEachEdge([&](Index a, Index b, std::span<const mesh::EdgeUse> uses) {
    const Point& p = mesh.points[a];
    const Point& q = mesh.points[b];
    const auto kind = classifier.Kind(a, b, uses);
    if (kind && std::hypot(q[0] - p[0], q[1] - p[1]) > 1e-9 &&
        (*kind == mesh::EdgeKind::kCrease) == creases) {
      edges.emplace(a, b);
    }
  });
  return edges;
}

// Points keep their numbers in a scene of one mesh.
std::set<Ends> edgesOfScene(const mesh::PolygonMesh& mesh, double creaseDegrees, bool creases) {
  const Scene scene = sceneOf(mesh);
  std::set<Ends> edges;
  for (const CandidateEdge& edge :
       findCandidateEdges(scene, tolerancesFor(boundsOf(scene)), creaseDegrees)) {
    if ((edge.kind == EdgeKind::kCrease) == creases) {
      edges.insert(std::minmax({edge.from, edge.to}));
    }
  }
  return edges;
}

void expectSameEdges(const mesh::PolygonMesh& mesh) {
  for (const double degrees : {0.0, 20.0, kDefaultCreaseDegrees, 60.0, kNoCreases}) {
    for (const bool creases : {false, true}) {
      EXPECT_EQ(edgesOfScene(mesh, degrees, creases), edgesOfMesh(mesh, degrees, creases))
          << degrees << (creases ? " creases" : " others");
    }
  }
}

// Turns a mesh about two axes, so that no face stands edge-on.
mesh::PolygonMesh tilted(mesh::PolygonMesh mesh) {
  const double cosine = std::cos(0.7);
  const double sine = std::sin(0.7);
  for (Point& p : mesh.points) {
    p = {p[0], cosine * p[1] - sine * p[2], sine * p[1] + cosine * p[2]};
    p = {cosine * p[0] + sine * p[2], p[1], cosine * p[2] - sine * p[0]};
  }
  return mesh;
}

// A prism whose sides meet at 360 / sides degrees.
mesh::PolygonMesh prism(Index sides) {
  mesh::PolygonMesh mesh;
  std::vector<Index> top;
  std::vector<Index> bottom;
  for (Index i = 0; i < sides; ++i) {
    const double angle = 2 * std::numbers::pi * i / sides;
    mesh.points.push_back({std::cos(angle), std::sin(angle), 0});
    mesh.points.push_back({std::cos(angle), std::sin(angle), 2});
    const Index next = (i + 1) % sides;
    mesh.Add(std::array<Index, 4>{2 * i, 2 * next, 2 * next + 1, 2 * i + 1}, 0);
    bottom.insert(bottom.begin(), 2 * i);
    top.push_back(2 * i + 1);
  }
  mesh.Add(top, 0);
  mesh.Add(bottom, 0);
  return mesh;
}

// A floor with a wall on it, which share an edge of three faces.
mesh::PolygonMesh wallOnFloor(const Point& wallTop) {
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 0},
                 {2, 0, 0},
                 {2, 2, 0},
                 {0, 2, 0},
                 {0, 1, 0},
                 {2, 1, 0},
                 {wallTop[0], wallTop[1], wallTop[2]},
                 {wallTop[0] + 2, wallTop[1], wallTop[2]}};
  mesh.Add(std::array<Index, 4>{0, 1, 5, 4}, 0);
  mesh.Add(std::array<Index, 4>{4, 5, 2, 3}, 0);
  mesh.Add(std::array<Index, 4>{4, 5, 7, 6}, 0);
  return mesh;
}

TEST(FindCandidateEdges, FacetNoiseIsNotDrawnAndItsSilhouettesStillBoundFaces) {
  mesh::PolygonMesh box;
  addBox(box, {0, 0, 0}, {2, 1, 1});
  box = tilted(box);
  std::vector<mesh::DrawnEdge> noise;
  mesh::EdgeTable(box).ForEachEdge([&](Index a, Index b, std::span<const mesh::EdgeUse>) {
    noise.push_back({a, b, 0, mesh::EdgeKind::kCrease});
  });
  PlacedMesh placed{&box, {}, 0, 0, noise};
  const Scene scene = assembleScene({&placed, 1});
  const std::vector<CandidateEdge> edges =
      findCandidateEdges(scene, tolerancesFor(boundsOf(scene)));
  EXPECT_EQ(edges.size(), 6U);
  EXPECT_TRUE(std::ranges::none_of(edges, [](const CandidateEdge& e) { return isDrawn(e.kind); }));
}

TEST(FindCandidateEdges, ShowsWhatTheMeshRoomShows) {
  mesh::PolygonMesh box;
  addBox(box, {0, 0, 0}, {1, 2, 3});
  expectSameEdges(box);
  expectSameEdges(tilted(box));
  for (const Index sides : {3U, 6U, 12U, 18U, 40U}) {
    expectSameEdges(prism(sides));
    expectSameEdges(tilted(prism(sides)));
  }
  for (const Point& top : {Point{0, 1, 1}, Point{0, 2, 1}, Point{0, 1.01, 3}}) {
    expectSameEdges(wallOnFloor(top));
    expectSameEdges(tilted(wallOnFloor(top)));
  }
}

TEST(FindCandidateEdges, PrismsOfTheVeryAngleHaveNoCreases) {
  const mesh::PolygonMesh twelve = tilted(prism(12));
  const auto isUpright = [](const Ends& ends) { return ends.first / 2 == ends.second / 2; };
  EXPECT_TRUE(std::ranges::none_of(edgesOfScene(twelve, 30, true), isUpright));
  EXPECT_TRUE(std::ranges::any_of(edgesOfScene(twelve, 29.9, true), isUpright));
}

// Side by side, each a part of its own.
Scene twoSquares() {
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {0, 1, 0}};
  mesh.Add(std::array<Index, 4>{1, 2, 3, 4}, 1);
  mesh.Add(std::array<Index, 4>{0, 1, 4, 5}, 0);
  return sceneOf(mesh);
}

TEST(FindCandidateEdges, OnePartContinuesAnother) {
  const Scene scene = twoSquares();
  const auto edges = findCandidateEdges(scene, tolerancesFor(boundsOf(scene)));
  EXPECT_EQ(edges.size(), 6U);
}

TEST(FindCandidateEdges, PartsThatLookDifferentHaveABorderBetweenThem) {
  const Scene scene = twoSquares();
  const Tolerances tolerances = tolerancesFor(boundsOf(scene));
  const std::vector<Index> alike = {3, 3};
  EXPECT_EQ(findCandidateEdges(scene, tolerances, 30, alike).size(), 6U);
  const std::vector<Index> different = {3, 4};
  const auto edges = findCandidateEdges(scene, tolerances, 30, different);
  EXPECT_EQ(edges.size(), 7U);
  EXPECT_EQ(std::ranges::count(edges, EdgeKind::kBorder, &CandidateEdge::kind), 7);
}

// A pane of two triangles, one of which got a corner of the wall right beside its own and a little
// off its plane, as closing T-junctions leaves it: a sliver of its triangulation stands upright.
TEST(FindCandidateEdges, ASliverMakesNoCreaseOfADiagonal) {
  for (const double off : {-5e-6, 5e-6}) {
    mesh::PolygonMesh mesh;
    mesh.points = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}, {3.999998, 2e-6, off}};
    mesh.Add(std::array<Index, 4>{3, 1, 4, 0}, 0);
    mesh.Add(std::array<Index, 3>{3, 1, 2}, 0);
    for (const bool isTilted : {false, true}) {
      const Scene scene = sceneOf(isTilted ? tilted(mesh) : mesh);
      const auto edges = findCandidateEdges(scene, tolerancesFor(boundsOf(scene)));
      EXPECT_TRUE(std::ranges::all_of(
          edges, [](const CandidateEdge& edge) { return edge.kind == EdgeKind::kBorder; }))
          << off << isTilted;
    }
  }
}

// A gable above two walls whose common corner is not quite on its foot: a sliver of the gable's
// triangulation, edge-on or turned over, covers the corner.
TEST(FindCandidateEdges, ASliverMakesNoSilhouetteOfASeam) {
  for (const double off : {-3e-5, -3e-7, -3e-9, -3e-10, 0.0, 3e-10, 3e-9, 3e-7}) {
    mesh::PolygonMesh mesh;
    mesh.points = {{0, 0, 0},  {1, off, off}, {2, 0, 0}, {1, 2, 0},
                   {0, -1, 0}, {1, -1, 0},    {2, -1, 0}};
    mesh.Add(std::array<Index, 4>{0, 1, 2, 3}, 0);
    mesh.Add(std::array<Index, 4>{4, 5, 1, 0}, 0);
    mesh.Add(std::array<Index, 4>{5, 6, 2, 1}, 0);
    for (const bool isTilted : {false, true}) {
      const Scene scene = sceneOf(isTilted ? tilted(mesh) : mesh);
      const auto edges = findCandidateEdges(scene, tolerancesFor(boundsOf(scene)));
      EXPECT_EQ(edges.size(), 6U) << off << isTilted;
    }
  }
}

TEST(FindCandidateEdges, TheUprightPartOfABentPolygonEndsItsSilhouette) {
  // A floor that goes on as a wall, in one polygon: two triangles lie, two stand.
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {2, 2, 2}, {0, 2, 2}, {0, 2, 0}};
  mesh.Add(std::array<Index, 6>{0, 1, 2, 3, 4, 5}, 0);
  const Scene scene = sceneOf(mesh);
  const auto edges = findCandidateEdges(scene, tolerancesFor(boundsOf(scene)));
  const auto endsAtWall = [](const CandidateEdge& edge) {
    return edge.kind == EdgeKind::kSilhouette && std::minmax({edge.from, edge.to}) == Ends(2, 5);
  };
  EXPECT_TRUE(std::ranges::any_of(edges, endsAtWall));
}

TEST(FindCandidateEdges, APolygonOfSeveralTrianglesHasTheCreasesOfItsPlane) {
  // A roof of two slopes, each of them with a corner in the middle of the ridge.
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 1}, {2, 0, 1}, {4, 0, 1}, {4, 3, 0}, {0, 3, 0}, {4, -3, 0}, {0, -3, 0}};
  mesh.Add(std::array<Index, 5>{0, 1, 2, 3, 4}, 0);
  mesh.Add(std::array<Index, 5>{2, 1, 0, 6, 5}, 0);
  const Scene scene = sceneOf(mesh);
  const Tolerances tolerances = tolerancesFor(boundsOf(scene));
  const auto creases = [&](double degrees) {
    const auto edges = findCandidateEdges(scene, tolerances, degrees);
    return std::ranges::count(edges, EdgeKind::kCrease, &CandidateEdge::kind);
  };
  // The slopes meet at 36.87 degrees.
  EXPECT_EQ(creases(36.8), 2);
  EXPECT_EQ(creases(36.9), 0);
}

}  // namespace
}  // namespace dxf2d::projection
