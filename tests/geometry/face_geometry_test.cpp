// The block that a face geometry's wire frame is written as.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "geometry/callbacks.h"
#include "plugin/entry.h"
#include "session/callbacks.h"
#include "session/export_session.h"
#include "tests/geometry/drawn_entities.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

const std::vector<double> kSquare = {0, 0, 5, 1, 0, 6, 1, 1, 7, 0, 1, 8};
const std::vector<int> kTwoTriangles = {0, 1, 2, 0, 2, 3, -5};
const std::vector<double> kOneNormal = {0, 0, 1};
const std::vector<double> kTwoNormals = {0, 0, 1, 0, 0, 1};

bool draw(const std::vector<double>& coords, const std::vector<int>& indices,
          const std::vector<double>& normals = {}) {
  return DXF2dFaceGeometry(coords, indices, normals, {}, {}, {}, false, false, false, false,
                           nullptr);
}

std::vector<PlanLine> linesIn(const std::string& body, const std::string& name) {
  const std::vector<Block> blocks = blocksIn(body, name);
  EXPECT_EQ(blocks.size(), 1U) << name;
  return blocks.empty() ? std::vector<PlanLine>{} : linesOf(blocks.front().entities);
}

// The lines of a set drawn into the root's block.
std::vector<PlanLine> linesOfSet(const std::vector<double>& coords, const std::vector<int>& indices,
                                 const std::vector<double>& normals = {}) {
  const DrawingSession session;
  EXPECT_TRUE(draw(coords, indices, normals));
  return linesIn(session.Body(), "GO_0");
}

// Neither a block nor a mark comes of the set.
void expectNothingDrawn(const std::vector<double>& coords, const std::vector<int>& indices) {
  const DrawingSession session;
  EXPECT_FALSE(draw(coords, indices));
  EXPECT_TRUE(session.Body().empty());
  EXPECT_FALSE(exportSession().root->hasGeometry);
}

}  // namespace

TEST(FaceGeometry, EdgeThatTwoTrianglesOfAPlaneShareCancelsOut) {
  EXPECT_EQ(linesOfSet(kSquare, kTwoTriangles, kOneNormal),
            (std::vector<PlanLine>{
                {{0, 0}, {1, 0}}, {{0, 0}, {0, 1}}, {{1, 0}, {1, 1}}, {{1, 1}, {0, 1}}}));
}

TEST(FaceGeometry, OnlyExactlyThreeDoublesAreOneNormal) {
  for (const std::size_t size : {0u, 1u, 2u, 4u, 5u, 6u}) {
    const std::vector<double> normals(size, 1.0);
    EXPECT_EQ(linesOfSet(kSquare, kTwoTriangles, normals).size(), 5U) << size;
  }
  EXPECT_EQ(linesOfSet(kSquare, kTwoTriangles, {0, 0, 0}).size(), 4U);
}

TEST(FaceGeometry, WithTwoNormalsTheSharedEdgeIsDrawnToo) {
  EXPECT_EQ(linesOfSet(kSquare, kTwoTriangles, kTwoNormals),
            (std::vector<PlanLine>{{{0, 0}, {1, 0}},
                                   {{0, 0}, {1, 1}},
                                   {{0, 0}, {0, 1}},
                                   {{1, 0}, {1, 1}},
                                   {{1, 1}, {0, 1}}}));
}

TEST(FaceGeometry, TrianglesOfDifferentListsShareTheirEdges) {
  EXPECT_EQ(linesOfSet(kSquare, {0, 1, 2, -5, 0, 2, 3, -5}, kOneNormal).size(), 4U);
}

TEST(FaceGeometry, SegmentsThatDifferByHalfTheToleranceAreDrawnOnce) {
  // Two triangles that both have an edge from about (0, 0) to about (0, 1).
  EXPECT_EQ(linesOfSet({0, 0, 0, 0, 1, 0, -1, 0, 0, 0.00005, 0, 0, 0.00005, 1, 0, 1, 0, 0},
                       {0, 1, 2, 3, 4, 5, -5})
                .size(),
            5U);
}

TEST(FaceGeometry, TriangleListOfFourIndicesIsIgnored) {
  expectNothingDrawn(kSquare, {0, 1, 2, 3, -5});
}

TEST(FaceGeometry, TriangleListOfFourIndicesLeavesTheOtherRuns) {
  EXPECT_EQ(linesOfSet(kSquare, {0, 1, 2, 3, -5, 0, 1, 2, -4}).size(), 4U);
}

TEST(FaceGeometry, PolygonsAloneAreIgnored) { expectNothingDrawn(kSquare, {0, 1, 2, 3, -7}); }

TEST(FaceGeometry, ExplicitLinesAreIgnored) {
  expectNothingDrawn(kSquare, {0, 1, 2, -6, 0, 1, -1});
}

TEST(FaceGeometry, FanIsItsOutlineWithAClosingSegmentOfNoLength) {
  EXPECT_EQ(linesOfSet(kSquare, {0, 1, 2, 3, -4}), (std::vector<PlanLine>{{{0, 0}, {0, 0}},
                                                                          {{0, 0}, {1, 0}},
                                                                          {{1, 0}, {1, 1}},
                                                                          {{1, 1}, {0, 1}},
                                                                          {{0, 1}, {0, 0}}}));
}

TEST(FaceGeometry, StripIsItsOutline) {
  EXPECT_EQ(linesOfSet(kSquare, {0, 1, 3, 2, -3}), (std::vector<PlanLine>{{{0, 0}, {0, 0}},
                                                                          {{0, 0}, {1, 0}},
                                                                          {{1, 0}, {1, 1}},
                                                                          {{1, 1}, {0, 1}},
                                                                          {{0, 1}, {0, 0}}}));
}

TEST(FaceGeometry, BlockAndLineAreWrittenGroupByGroup) {
  const DrawingSession session;
  // Upright: of its three edges two lie in one place of the plan, and one has no length.
  EXPECT_TRUE(draw({1, 2, 3, 4, 6, 3, 1, 2, 9}, {0, 1, 2, -5}));
  EXPECT_EQ(session.Body(),
            "  0\nBLOCK\n  8\n0\n  2\nGO_0\n 70\n64\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n  3\nGO_0\n"
            "  0\nLINE\n  8\n0\n 62\n254\n 10\n1.000000\n 20\n2.000000\n 30\n0.000000\n"
            " 11\n4.000000\n 21\n6.000000\n 31\n0.000000\n"
            "  0\nLINE\n  8\n0\n 62\n254\n 10\n1.000000\n 20\n2.000000\n 30\n0.000000\n"
            " 11\n1.000000\n 21\n2.000000\n 31\n0.000000\n"
            "  0\nENDBLK\n  8\n0\n");
}

TEST(FaceGeometry, NodesMatrixIsAppliedWhateverItsFrame) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  object.node.matrix.SetTranslation(10, 20, 30);
  DXF2dOpenNode(object.Attribute());
  EXPECT_TRUE(draw(kSquare, {0, 1, 2, -5}));
  EXPECT_EQ(
      linesIn(session.Body(), "GO_1"),
      (std::vector<PlanLine>{{{10, 20}, {11, 20}}, {{10, 20}, {11, 21}}, {{11, 20}, {11, 21}}}));
}

TEST(FaceGeometry, PlacesAreComparedBeforeTheMatrixIsApplied) {
  const DrawingSession session;
  HostNode host;
  double data[16];
  host.node.matrix.GetData(data);
  data[0] = 1000.0;
  host.node.matrix.Init(data);
  DXF2dOpenNode(host.Attribute());
  // 0.00005 apart as sent, 0.05 as written.
  EXPECT_TRUE(draw({0, 0, 0, 0.00005, 0, 0, 0, 1, 0}, {0, 1, 2, -5}));
  EXPECT_EQ(linesIn(session.Body(), "GO_1"),
            (std::vector<PlanLine>{{{0, 0}, {0.05, 0}}, {{0, 0}, {0, 1}}}));
}

TEST(FaceGeometry, UprightNodeShowsTheHeightOfEveryPoint) {
  const DrawingSession session;
  HostNode host;
  host.node.matrix.Init(
      std::array<double, 16>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1}.data());
  DXF2dOpenNode(host.Attribute());
  EXPECT_TRUE(draw(kSquare, {0, 1, 2, -5}));
  EXPECT_EQ(linesIn(session.Body(), "GO_1"),
            (std::vector<PlanLine>{{{5, 0}, {6, 0}}, {{5, 0}, {7, 1}}, {{6, 0}, {7, 1}}}));
}

TEST(FaceGeometry, LinesHaveTheNodesColor) {
  const DrawingSession session;
  exportSession().currentNode->colorIndex = 3;
  EXPECT_TRUE(draw(kSquare, {0, 1, 2, -5}));
  const std::vector<Block> blocks = blocksOf(entitiesOf(groupsOf(session.Body())));
  ASSERT_EQ(blocks.size(), 1U);
  for (const Entity& line : blocks[0].entities) {
    EXPECT_EQ(line.Value(62), "3");
  }
}

TEST(FaceGeometry, NodeAndEveryAncestorAreMarked) {
  const DrawingSession session;
  HostNode host;
  DXF2dOpenNode(host.Attribute());
  EXPECT_TRUE(draw(kSquare, kTwoTriangles));
  EXPECT_TRUE(exportSession().currentNode->hasGeometry);
  EXPECT_TRUE(exportSession().root->hasGeometry);
}

TEST(FaceGeometry, SegmentsWithAnEndThatIsNotThereAreLeftOut) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(linesOfSet({0, 0, 0, 1, 0, 0, 1, kNan, 0}, {0, 1, 2, 0, 1, 9, -5}),
            (std::vector<PlanLine>{{{0, 0}, {1, 0}}}));
}

TEST(FaceGeometry, ReturnsFalseWithoutAFileANodeOrInput) {
  EXPECT_FALSE(draw(kSquare, kTwoTriangles));
  const DrawingSession session;
  EXPECT_FALSE(draw({}, kTwoTriangles));
  EXPECT_FALSE(draw(kSquare, {}));
  DXF2dCloseNode();
  EXPECT_FALSE(draw(kSquare, kTwoTriangles));
  EXPECT_TRUE(session.Body().empty());
}

}  // namespace dxf2d
