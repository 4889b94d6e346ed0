#include "projection/visibility.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "tests/projection/projected_lines.h"
#include "tests/projection/reference_projection.h"
#include "tests/projection/sample_scenes.h"

namespace dxf2d::projection {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

ProjectedScene projected(const mesh::PolygonMesh& mesh) { return ProjectedScene(sceneOf(mesh)); }

TEST(FindVisibleLines, BoxShowsItsUpperBorderOnly) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 1, 1});
  const ProjectedScene box = projected(mesh);
  EXPECT_NEAR(lengthOf(box.Visible()), 6, 1e-12);
  EXPECT_NEAR(lengthOf(box.Hidden()), 6, 1e-12);
}

TEST(FindVisibleLines, BoxOnBoxHidesNothingOfTheLowerOnesTop) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 4, 1});
  addBox(mesh, {1, 1, 1}, {2, 2, 2}, 1);
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 0, 2));
  EXPECT_TRUE(isDrawn(visible, 1, 1.5));
  EXPECT_NEAR(lengthOf(visible), 20, 1e-12);
}

TEST(FindVisibleLines, BoxHidesWhatIsBehindIt) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {4, 4, 1});
  addBox(mesh, {3, 1, 2}, {6, 3, 3}, 1);
  const ProjectedScene boxes = projected(mesh);
  EXPECT_FALSE(isDrawn(boxes.Visible(), 4, 2));
  EXPECT_TRUE(isDrawn(boxes.Hidden(), 4, 2));
  EXPECT_TRUE(isDrawn(boxes.Visible(), 4, 0.5));
  EXPECT_TRUE(isDrawn(boxes.Visible(), 3, 2));
  EXPECT_NEAR(lengthOf(boxes.Visible()), 14 + 10, 1e-12);
}

TEST(FindVisibleLines, BarThroughRoofShowsWhereItComesOut) {
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {4, 0, 4}, {4, 4, 4}, {0, 4, 0}});
  addPolygon(mesh, {{0, 1, 2}, {4, 1, 2}, {4, 3, 2}, {0, 3, 2}}, 1);
  const ProjectedScene both = projected(mesh);
  EXPECT_TRUE(isDrawn(both.Visible(), 2, 2));   // where they pierce each other
  EXPECT_TRUE(isDrawn(both.Visible(), 1, 1));   // the bar above the roof
  EXPECT_FALSE(isDrawn(both.Visible(), 3, 1));  // and below
  EXPECT_TRUE(isDrawn(both.Hidden(), 3, 1));
  ASSERT_FALSE(both.lines.piercings.empty());
  EXPECT_EQ(both.lines.piercings[0].part, 0U);
}

TEST(FindVisibleLines, TiltedBoxThroughTiltedBoxShowsEveryIntersection) {
  Scene scene = sampleScene(SampleKind::kBoxes, 24, 5);
  const ProjectedScene boxes(std::move(scene));
  for (const PiercingPiece& piece : boxes.lines.piercings) {
    Point middle;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      middle[axis] = (piece.from[axis] + piece.to[axis]) / 2;
    }
    EXPECT_NE(seenFrom(boxes.scene, middle, {1e-8, 1e-5}), Seen::kHidden);
  }
}

TEST(FindVisibleLines, WallsFlushWithASlabShowTheirBottomEdgesFromAnySide) {
  // The wall's front and the slab's are in one plane, which faces the viewer.
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {6, 1, 5});
  addBox(mesh, {1, 1, 4}, {5, 4, 5}, 1);
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 3, 1));
  EXPECT_TRUE(isDrawn(visible, 0.5, 1));
  EXPECT_TRUE(isDrawn(visible, 1, 2));
}

TEST(FindVisibleLines, FacesOffOnePlaneByRoundingHideNothingOfEachOther) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {6, 1, 5});
  addBox(mesh, {1, 1 - 3e-7, 4}, {5, 4, 5 + 6e-7}, 1);
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 3, 1));
  EXPECT_TRUE(isDrawn(visible, 0.5, 1));
}

// Repair moves points by up to its weld distance, which is more than what rounding does.
TEST(FindVisibleLines, FacesThatRepairBentHideNothingOfEachOther) {
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}});
  addPolygon(mesh, {{1, 1, -6e-6}, {2, 1, -6e-6}, {2, 2, -6e-6}, {1, 2, -6e-6}}, 1);
  PlacedMesh placed{&mesh, {}, 0};
  EXPECT_NEAR(lengthOf(ProjectedScene(assembleScene({&placed, 1})).Visible()), 14, 1e-9);
  placed.deviationShare = 1e-6;
  EXPECT_NEAR(lengthOf(ProjectedScene(assembleScene({&placed, 1})).Visible()), 18, 1e-9);
}

TEST(FindVisibleLines, SliverHidesNothingBeyondItsSharpCorner) {
  mesh::PolygonMesh mesh;
  // Wider than what is seen edge-on, and so sharp that both of its long sides pass the line nearer
  // than the tolerance.
  addPolygon(mesh, {{0, 0, 2}, {1, 0, 2}, {1, 8e-9, 2}});
  mesh.points.insert(mesh.points.end(), {{-0.3, 0, 0}, {-0.1, 0, 0}, {2, 2, 0}, {2, 3, 0}});
  mesh.segments = {{3, 4, 0}, {5, 6, 0}};
  EXPECT_TRUE(isDrawn(projected(mesh).Visible(), -0.2, 0));
}

TEST(FindVisibleLines, LineThatTouchesAFaceIsHiddenWhereTheFaceRises) {
  mesh::PolygonMesh mesh;
  mesh.points = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {8, 0, 2}, {8, 4, 2}};
  mesh.Add(std::array<Index, 4>{0, 1, 2, 3}, 0);
  mesh.Add(std::array<Index, 4>{1, 4, 5, 2}, 0);
  // Off the level face by rounding.
  mesh.points.insert(mesh.points.end(), {{1, 2, -1e-6}, {6, 2, -1e-6}});
  mesh.segments = {{6, 7, 0}};
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 2, 2));
  EXPECT_TRUE(isDrawn(visible, 3.9, 2));
  EXPECT_FALSE(isDrawn(visible, 4.1, 2));
}

TEST(FindVisibleLines, CubesThatShareAFaceBothShowTheCommonBorder) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {1, 1, 1});
  addBox(mesh, {1, 0, 0}, {2, 1, 1}, 1);
  EXPECT_NEAR(lengthOf(projected(mesh).Visible()), 8, 1e-12);
}

TEST(FindVisibleLines, UnweldedSphereShowsNothingHiddenByItsPoles) {
  mesh::PolygonMesh mesh;
  addUnweldedSphere(mesh, {0, 0, 0}, 1, 24, 12);
  // A line that ends on the pole from above.
  mesh.segments.push_back({static_cast<Index>(mesh.points.size()), 0, 0});
  mesh.points.push_back({0.5, 0, 1.2});
  const ProjectedScene sphere = projected(mesh);
  // Every quad has borders of its own: those of the upper half are all visible.
  for (const EdgePiece& piece : hiddenPieces(sphere.edges.size(), sphere.lines.pieces)) {
    const CandidateEdge& edge = sphere.edges[piece.edge];
    EXPECT_LT(sphere.scene.points[edge.from][2] + sphere.scene.points[edge.to][2], 1e-9);
    EXPECT_NE(edge.kind, EdgeKind::kLine);
  }
}

TEST(FindVisibleLines, ConeFromAboveShowsItsRim) {
  mesh::PolygonMesh mesh;
  mesh.points.push_back({0, 0, 2});
  constexpr Index kSides = 32;
  for (Index i = 0; i < kSides; ++i) {
    const double angle = 2 * std::numbers::pi * i / kSides;
    mesh.points.push_back({std::cos(angle), std::sin(angle), 0});
  }
  for (Index i = 0; i < kSides; ++i) {
    mesh.Add(std::array<Index, 3>{0, 1 + i, 1 + (i + 1) % kSides}, 0);
  }
  const double rim = kSides * 2 * std::sin(std::numbers::pi / kSides);
  EXPECT_NEAR(lengthOf(projected(mesh).Visible()), rim, 1e-12);
}

TEST(FindVisibleLines, PlateWithAHoleShowsWhatLiesBelowTheHole) {
  mesh::PolygonMesh mesh;
  addPolygon(mesh, {{0, 0, 1},
                    {6, 0, 1},
                    {6, 6, 1},
                    {0, 6, 1},
                    {0, 0, 1},
                    {2, 2, 1},
                    {2, 4, 1},
                    {4, 4, 1},
                    {4, 2, 1},
                    {2, 2, 1}});
  addPolygon(mesh, {{1, 2.9, 0}, {5, 2.9, 0}, {5, 3.1, 0}, {1, 3.1, 0}}, 1);
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 3, 2.9));
  EXPECT_FALSE(isDrawn(visible, 1.5, 2.9));
  EXPECT_FALSE(isDrawn(visible, 4.5, 3.1));
  EXPECT_TRUE(isDrawn(visible, 2, 3));
}

TEST(FindVisibleLines, FacesGivenTwiceShowOneBorder) {
  mesh::PolygonMesh mesh;
  for (int i = 0; i < 2; ++i) {
    mesh.points.insert(mesh.points.end(), {{0, 0, 0}, {1, 0, 0}, {1, 1, 0.5}, {0, 1, 0.5}});
    mesh.Add(std::array<Index, 4>{0, 1, 2, 3}, 0);
  }
  EXPECT_NEAR(lengthOf(projected(mesh).Visible()), 4, 1e-12);
}

TEST(FindVisibleLines, LinesOfTheModelAreHiddenToo) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {2, 2, 1});
  mesh.points.insert(mesh.points.end(), {{-1, 1, 0.5}, {3, 1, 0.5}});
  mesh.segments.push_back({8, 9, 0});
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, -0.5, 1));
  EXPECT_FALSE(isDrawn(visible, 1, 1));
  EXPECT_TRUE(isDrawn(visible, 2.5, 1));
}

TEST(FindVisibleLines, AModelOfAFewRoundingStepsIsSeenToItsEnds) {
  constexpr double kStep = std::numeric_limits<double>::epsilon();
  for (int steps = 1; steps < 12; ++steps) {
    mesh::PolygonMesh mesh;
    mesh.points = {{1, -1, 0}, {1 + steps * kStep, -1, 0}};
    mesh.segments = {{0, 1, 0}};
    const std::vector<EdgePiece> whole = {{0, 0, 1}};
    EXPECT_EQ(projected(mesh).lines.pieces, whole) << steps;
  }
}

TEST(FindVisibleLines, NothingGivesNothing) {
  const ProjectedScene nothing((Scene()));
  EXPECT_TRUE(nothing.lines.pieces.empty());
  EXPECT_TRUE(nothing.lines.piercings.empty());
  EXPECT_EQ(nothing.Outline().loops.Count(), 0U);
}

TEST(FindVisibleLines, DegenerateAndNonFiniteFacesAreLeftOut) {
  mesh::PolygonMesh mesh;
  addBox(mesh, {0, 0, 0}, {1, 1, 1});
  addPolygon(mesh, {{0, 0, 5}, {1, 1, 5}, {2, 2, 5}});
  addPolygon(mesh, {{0, 0, 5}, {0, 0, 5}, {0, 0, 5}});
  addPolygon(mesh, {{0, 0, 5}, {1, kNaN, 5}, {2, 2, 5}});
  addPolygon(mesh, {{0, 0, 5}, {1, 0, 1e300}, {2, 2, 5}});
  const std::vector<ProjectedLine> visible = projected(mesh).Visible();
  EXPECT_TRUE(isDrawn(visible, 0.5, 0));
  EXPECT_FALSE(isDrawn(visible, 2, 1));
}

// Random points of all candidate edges against all triangles.
void expectTruth(Scene scene, std::size_t samples, const char* what) {
  const ProjectedScene drawn(std::move(scene));
  std::vector<std::size_t> starts(drawn.edges.size() + 1);
  for (const EdgePiece& piece : drawn.lines.pieces) {
    ++starts[piece.edge + 1];
  }
  for (std::size_t i = 1; i < starts.size(); ++i) {
    starts[i] += starts[i - 1];
  }
  std::mt19937 random(11);
  const PointSlack slack = {2 * drawn.tolerances.plan, 2 * drawn.tolerances.touch};
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < samples; ++i) {
    const auto edge = static_cast<Index>(random() % drawn.edges.size());
    const double t = static_cast<double>(random()) / 4294967296.0;
    bool isVisible = false;
    for (std::size_t p = starts[edge]; p < starts[edge + 1]; ++p) {
      const EdgePiece& piece = drawn.lines.pieces[p];
      isVisible = isVisible || (piece.begin <= t && t <= piece.end);
    }
    const Point& a = drawn.scene.points[drawn.edges[edge].from];
    const Point& b = drawn.scene.points[drawn.edges[edge].to];
    const Point point = {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]),
                         a[2] + t * (b[2] - a[2])};
    const Seen seen = seenFrom(drawn.scene, point, slack);
    wrong += seen == (isVisible ? Seen::kHidden : Seen::kVisible) ? 1U : 0U;
  }
  EXPECT_LE(wrong, samples / 1000) << what;
}

TEST(FindVisibleLines, AgreesWithAllTrianglesAtRandomPoints) {
  expectTruth(sampleScene(SampleKind::kPiledBoxes, 2400, 1), 3000, "piled boxes");
  expectTruth(sampleScene(SampleKind::kBoxes, 2400, 2), 3000, "interpenetrating boxes");
  expectTruth(sampleScene(SampleKind::kSpheres, 5000, 3), 3000, "spheres");
  expectTruth(sampleScene(SampleKind::kTerrain, 3000, 4), 3000, "terrain");
}

// The sharp test: soups on a small grid, where most things touch, coincide or degenerate.
TEST(FindVisibleLines, AgreesWithAllTrianglesOnRandomSoups) {
  std::mt19937 random(17);
  for (int round = 0; round < 600; ++round) {
    const ProjectedScene soup(randomSoup(random, 1 + round % 24, 3));
    const PointSlack slack = {1e-6, 1e-4};
    const auto expectAt = [&](const EdgePiece& piece, Seen never) {
      const Point& a = soup.scene.points[soup.edges[piece.edge].from];
      const Point& b = soup.scene.points[soup.edges[piece.edge].to];
      for (const double share : {0.21, 0.5, 0.83}) {
        const double t = piece.begin + share * (piece.end - piece.begin);
        const Point point = {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]),
                             a[2] + t * (b[2] - a[2])};
        ASSERT_NE(seenFrom(soup.scene, point, slack), never) << "round " << round;
      }
    };
    for (const EdgePiece& piece : soup.lines.pieces) {
      expectAt(piece, Seen::kHidden);
    }
    for (const EdgePiece& piece : hiddenPieces(soup.edges.size(), soup.lines.pieces)) {
      if (piece.end - piece.begin > 1e-5) {
        expectAt(piece, Seen::kVisible);
      }
    }
    for (const PiercingPiece& piece : soup.lines.piercings) {
      Point middle;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        middle[axis] = piece.from[axis] + 0.37 * (piece.to[axis] - piece.from[axis]);
      }
      ASSERT_NE(seenFrom(soup.scene, middle, slack), Seen::kHidden) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace dxf2d::projection
