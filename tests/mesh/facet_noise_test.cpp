// Lines that show only because of the way a curved surface was cut into facets.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "mesh/drawn_edges.h"
#include "mesh/repair.h"
#include "tests/mesh/sample_meshes.h"

using namespace dxf2d::mesh;

namespace {

DrawnEdges drawn(PolygonMesh mesh, bool dropsNoise) {
  const Repaired repaired = repair(mesh, {});
  return findDrawnEdges(mesh, repaired.edges,
                        {kDefaultCreaseDegrees, repaired.distance, {}, dropsNoise});
}

std::size_t countOf(const DrawnEdges& edges, EdgeKind kind) {
  return edges.CountKinds()[static_cast<std::size_t>(kind)];
}

// Expects that `mesh` draws alike from all sides with noise dropped and without.
void expectNoNoise(const PolygonMesh& mesh) {
  for (const View& view : allViews()) {
    SCOPED_TRACE(view.name);
    const PolygonMesh seen = seenFrom(mesh, view);
    EXPECT_EQ(drawn(seen, true).noise, 0U);
    EXPECT_EQ(drawn(seen, true).edges, drawn(seen, false).edges);
  }
}

// A plate that is bent by 80 degrees in a fillet of `strips`, along y; the inner points of the
// fillet are up to `noise` off.
PolygonMesh makeFillet(int strips, double noise) {
  constexpr int kLength = 60;
  constexpr double kBend = 80.0 * std::numbers::pi / 180.0;
  std::mt19937 random(5);
  std::uniform_real_distribution<double> offset(-noise, noise);
  std::vector<std::vector<Point>> rows;
  for (int row = -1; row <= strips + 1; ++row) {
    const double angle = kBend * std::clamp(row, 0, strips) / strips;
    const double before = row < 0 ? 4.0 : 0.0;
    const double after = row > strips ? 4.0 : 0.0;
    rows.emplace_back();
    for (int i = 0; i <= kLength; ++i) {
      const bool isInner = row >= 0 && row <= strips && i > 2 && i < kLength - 2;
      const double off = isInner ? offset(random) : 0.0;
      rows.back().push_back({(1.0 + off) * std::sin(angle) - before + after * std::cos(angle),
                             0.2 * i, (1.0 + off) * std::cos(angle) - after * std::sin(angle)});
    }
  }
  PolygonMesh mesh;
  for (std::size_t row = 0; row + 1 < rows.size(); ++row) {
    for (std::size_t i = 0; i < kLength; ++i) {
      addPolygon(mesh, {rows[row][i], rows[row + 1][i], rows[row + 1][i + 1]});
      addPolygon(mesh, {rows[row][i], rows[row + 1][i + 1], rows[row][i + 1]});
    }
  }
  return mesh;
}

TEST(FacetNoise, FilletWithNoiseHasNoDashes) {
  const PolygonMesh smooth = makeFillet(4, 0.0);
  EXPECT_EQ(countOf(drawn(smooth, false), EdgeKind::kCrease), 0U);
  const PolygonMesh noisy = makeFillet(4, 0.03);
  EXPECT_GT(countOf(drawn(noisy, false), EdgeKind::kCrease), 5U);
  EXPECT_EQ(countOf(drawn(noisy, true), EdgeKind::kCrease), 0U);
  EXPECT_EQ(countOf(drawn(noisy, true), EdgeKind::kBorder),
            countOf(drawn(noisy, false), EdgeKind::kBorder));
}

TEST(FacetNoise, IsWhatDrawingsLeaveOut) {
  PolygonMesh mesh = makeFillet(4, 0.03);
  const Repaired repaired = repair(mesh, {});
  const std::vector<DrawnEdge> noise =
      findFacetNoise(mesh, repaired.edges, {kDefaultCreaseDegrees, repaired.distance, {}, true});
  EXPECT_EQ(noise.size(), drawn(mesh, true).noise);
  const DrawnEdges all = drawn(mesh, false);
  for (const DrawnEdge& edge : noise) {
    EXPECT_NE(std::ranges::find(all.edges, edge), all.edges.end());
  }
}

TEST(FacetNoise, FilletOfTwoStripsKeepsItsLines) {
  // Each bends by 40 degrees, which is little, and runs from border to border.
  const DrawnEdges edges = drawn(makeFillet(1, 0.0), true);
  EXPECT_EQ(countOf(edges, EdgeKind::kCrease), 2U * 60U);
  EXPECT_EQ(edges.noise, 0U);
}

TEST(FacetNoise, SmallRoofOnALargePlateKeepsItsRidge) {
  // Slopes of 25 degrees: its foot does not show, and its hips bend by little more than 30.
  const double height = 0.4 * std::tan(25.0 * std::numbers::pi / 180.0);
  const std::vector<Point> foot = {{-0.6, -0.4, 0}, {0.6, -0.4, 0}, {0.6, 0.4, 0}, {-0.6, 0.4, 0}};
  const std::vector<Point> plate = {{-20, -20, 0}, {20, -20, 0}, {20, 20, 0}, {-20, 20, 0}};
  const std::vector<Point> ridge = {{-0.2, 0, height}, {0.2, 0, height}};
  PolygonMesh mesh;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t j = (i + 1) % 4;
    addPolygon(mesh, {plate[i], plate[j], foot[j], foot[i]});
  }
  addPolygon(mesh, {foot[0], foot[1], ridge[1], ridge[0]});
  addPolygon(mesh, {foot[1], foot[2], ridge[1]});
  addPolygon(mesh, {foot[2], foot[3], ridge[0], ridge[1]});
  addPolygon(mesh, {foot[3], foot[0], ridge[0]});
  EXPECT_EQ(countOf(drawn(mesh, true), EdgeKind::kCrease), 5U);
  EXPECT_EQ(drawn(mesh, true).edges, drawn(mesh, false).edges);
}

TEST(FacetNoise, ShortCreaseBetweenCornersStays) {
  // A ridge of 40 degrees whose ends are on the border of a strip that it crosses.
  const double drop = std::tan(20.0 * std::numbers::pi / 180.0);
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {20, 0, 20 * drop}, {20, 1, 20 * drop}, {0, 1, 0}});
  addPolygon(mesh, {{20, 0, 20 * drop}, {40, 0, 0}, {40, 1, 0}, {20, 1, 20 * drop}});
  const DrawnEdges edges = drawn(mesh, true);
  EXPECT_EQ(countOf(edges, EdgeKind::kCrease), 1U);
  EXPECT_EQ(edges.noise, 0U);
}

TEST(FacetNoise, SharpModelsAreDrawnAsBefore) {
  expectNoNoise(makeBox());
  expectNoNoise(makeHippedRoof());
  expectNoNoise(makeStairs(5));
  expectNoNoise(makeCylinder(11));
  expectNoNoise(makeCylinder(24));
  expectNoNoise(makeSphere(32, 16));
  expectNoNoise(makeMoebiusStrip(36, 0));
}

// A plate on a slope, cut along y = 1, where a needle leans under its lower half.
PolygonMesh plateWithNeedle() {
  const Point left = {0, 1, 0};
  const Point right = {1, 1, 0};
  const Point tip = {0.5, 0.996, -0.004};
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {1, 0, 0}, right, left});
  addPolygon(mesh, {left, right, tip});
  addPolygon(mesh, {left, tip, right, {1, 2, 0}, {0, 2, 0}});
  return mesh;
}

TEST(FacetNoise, NeedleThatLeansOverIsNoSilhouette) {
  EXPECT_EQ(countOf(drawn(plateWithNeedle(), false), EdgeKind::kSilhouette), 3U);
  const DrawnEdges edges = drawn(plateWithNeedle(), true);
  EXPECT_EQ(countOf(edges, EdgeKind::kSilhouette), 0U);
  EXPECT_EQ(countOf(edges, EdgeKind::kBorder), 6U);
}

TEST(FacetNoise, ThinRodBesideAPlateIsDrawnWholly) {
  PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
  // Its underside is a needle that faces away, as all of it does.
  const std::vector<Point> ends = {{2, 0, 0.001}, {2, 0.002, 0}, {2, 0.004, 0.001}};
  std::vector<Point> others = ends;
  for (Point& point : others) {
    point[0] = 3.0;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t j = (i + 1) % 3;
    addPolygon(mesh, {ends[i], ends[j], others[j], others[i]});
  }
  addPolygon(mesh, {ends[2], ends[1], ends[0]});
  addPolygon(mesh, others);
  expectNoNoise(mesh);
}

}  // namespace
