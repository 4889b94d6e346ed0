// The block that a face set is written as.
#include "geometry/callbacks.h"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

#include "geometry/callbacks.h"
#include "plugin/entry.h"
#include "session/callbacks.h"
#include "session/export_session.h"
#include "tests/geometry/drawn_entities.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

const std::vector<double> kTriangle = {0, 0, 1, 4, 0, 2, 0, 3, 3};
const std::vector<int> kTriangleFace = {0, 1, 2, -7};
const std::vector<double> kLine = {1, 2, 3, 4, 6, 8};
const std::vector<int> kLineRun = {0, 1, -1};

bool drawFaces(const std::vector<double>& coords, const std::vector<int>& indices) {
  return faceSetCallback(coords, indices, false, true);
}

void place(HostNode& host, double x, double y) { host.node.matrix.SetTranslation(x, y, 0); }

}  // namespace

TEST(FaceSetCallback, SeventhCoordinateIsIgnored) {
  const auto polylines = drawnAtTheRoot([] {
    return drawFaces({0, 0, 0, 5, 0, 0, 9}, {0, 1, 2, 0, -6});
  });
  EXPECT_EQ(polylines, (std::vector<PlanPlaces>{{{0, 0}, {5, 0}}}));
}

TEST(FaceSetCallback, SetWithoutAnOutlineWritesAndMarksNothing) {
  DrawingSession session;
  EXPECT_TRUE(drawFaces(kTriangle, {0, 1, 2, -2}));
  EXPECT_TRUE(drawFaces(kTriangle, {0, 1, -7, 0, 1, -5, 0, 1, -4, 0, 1, -3}));
  EXPECT_TRUE(drawFaces(kTriangle, {0, -6, 1, 2, 0, -1}));
  EXPECT_TRUE(session.Body().empty());
  EXPECT_FALSE(exportSession().root->hasGeometry);
  EXPECT_TRUE(blocksOf(entitiesOf(groupsOf(session.Close()))).empty());
}

TEST(FaceSetCallback, OutlineOfNothingButVerticalEdgesWritesAndMarksNothing) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces({0, 0, 0, 0, 0, 1, 0, 0, 2}, kTriangleFace));
  EXPECT_TRUE(session.Body().empty());
  EXPECT_FALSE(exportSession().root->hasGeometry);
}

TEST(FaceSetCallback, ExplicitLinesAreWrittenFlat) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces({0, 0, 7, 1, 0, 8, 1, 1, 9, 5, 5, 5}, {0, 1, 2, -6, 2, 3, -1}));
  const std::vector<Block> blocks = blocksIn(session.Body(), "GO_0");
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_EQ(polylinesOf(blocks[0].entities),
            (std::vector<PlanPlaces>{{{0, 0}, {1, 0}, {1, 1}, {5, 5}}}));
  for (const Entity& vertex : entitiesOfType(blocks[0].entities, "VERTEX")) {
    EXPECT_EQ(vertex.Value(30), "0.000000");
  }
}

TEST(FaceSetCallback, WithoutARealObjectTheNodeIsPlacedInTheWorld) {
  const DrawingSession session;
  HostNode outer;
  HostNode inner(u"g", u"o");
  place(outer, 10, 20);
  place(inner, 1, 2);
  DXF2dOpenNode(outer.Attribute());
  DXF2dOpenNode(inner.Attribute());
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_2"),
            (std::vector<PlanPlaces>{{{11, 22}, {15, 22}, {11, 25}, {11, 22}}}));
}

TEST(FaceSetCallback, BelowARealObjectTheNodeIsPlacedInTheObjectsFrame) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  HostNode part;
  place(object, 10, 20);
  place(part, 1, 2);
  DXF2dOpenNode(object.Attribute());
  DXF2dOpenNode(part.Attribute());
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_2"),
            (std::vector<PlanPlaces>{{{1, 2}, {5, 2}, {1, 5}, {1, 2}}}));
}

TEST(FaceSetCallback, RealObjectsOwnGeometryStandsAsItWasSent) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  place(object, 0.1, 0.7);
  object.node.matrix.Rotate(0, 0, 1, 1.1);
  DXF2dOpenNode(object.Attribute());
  EXPECT_TRUE(drawFaces({0.1, 0.2, 0, 0.3, 0.7, 0}, kLineRun));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_1"),
            (std::vector<PlanPlaces>{{{0.1, 0.2}, {0.3, 0.7}}}));
}

TEST(FaceSetCallback, NearestRealObjectIsTheFrame) {
  const DrawingSession session;
  HostNode outer(u"g", u"o", u"r1");
  HostNode nearest(u"h", u"p", u"r2");
  HostNode part;
  place(outer, 100, 0);
  place(nearest, 10, 0);
  place(part, 1, 0);
  DXF2dOpenNode(outer.Attribute());
  DXF2dOpenNode(nearest.Attribute());
  DXF2dOpenNode(part.Attribute());
  EXPECT_TRUE(drawFaces({0, 0, 0, 1, 1, 0}, kLineRun));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_3"), (std::vector<PlanPlaces>{{{1, 0}, {2, 1}}}));
}

TEST(FaceSetCallback, BelowATiltedRealObjectTheNodeIsPlacedInTheWorld) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  place(object, 10, 20);
  object.node.matrix.Rotate(1, 0, 0, std::numbers::pi / 2);
  DXF2dOpenNode(object.Attribute());
  // Up along z, which the tilt turns to -y.
  EXPECT_TRUE(drawFaces({0, 0, 0, 0, 0, 3}, kLineRun));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_1"), (std::vector<PlanPlaces>{{{10, 20}, {10, 17}}}));
}

TEST(FaceSetCallback, TiltUpToTheLimitKeepsTheObjectsFrame) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  place(object, 10, 20);
  object.node.matrix.Rotate(1, 0, 0, 0.029);
  DXF2dOpenNode(object.Attribute());
  EXPECT_TRUE(drawFaces({0, 0, 0, 1, 0, 0}, kLineRun));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_1"), (std::vector<PlanPlaces>{{{0, 0}, {1, 0}}}));
}

TEST(FaceSetCallback, BlockAndPolylineAreWrittenGroupByGroup) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces(kLine, kLineRun));
  EXPECT_EQ(session.Body(),
            "  0\nBLOCK\n  8\n0\n  2\nGO_0\n 70\n64\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n  3\nGO_0\n"
            "  0\nPOLYLINE\n  8\n0\n 62\n254\n 66\n1\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n 70\n0\n"
            "  0\nVERTEX\n  8\n0\n 70\n0\n 10\n1.000000\n 20\n2.000000\n 30\n0.000000\n"
            "  0\nVERTEX\n  8\n0\n 70\n0\n 10\n4.000000\n 20\n6.000000\n 30\n0.000000\n"
            "  0\nSEQEND\n  0\nENDBLK\n  8\n0\n");
}

TEST(FaceSetCallback, ClosedLoopIsAnOpenPolylineThatEndsWhereItBegan) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  const std::vector<Block> blocks = blocksIn(session.Body(), "GO_0");
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_EQ(polylinesOf(blocks[0].entities),
            (std::vector<PlanPlaces>{{{0, 0}, {4, 0}, {0, 3}, {0, 0}}}));
  EXPECT_EQ(blocks[0].entities.front().Value(70), "0");
}

TEST(FaceSetCallback, EveryChainIsAPolyline) {
  const auto polylines = drawnAtTheRoot([] {
    return drawFaces({0, 0, 0, 1, 0, 0, 5, 5, 0, 6, 5, 0}, {0, 1, -1, 2, 3, -1});
  });
  EXPECT_EQ(polylines, (std::vector<PlanPlaces>{{{0, 0}, {1, 0}}, {{5, 5}, {6, 5}}}));
}

TEST(FaceSetCallback, EverySetOfANodeIsABlockOfItsName) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  EXPECT_TRUE(drawFaces(kLine, kLineRun));
  EXPECT_EQ(blocksIn(session.Body(), "GO_0").size(), 2U);
}

TEST(FaceSetCallback, PolylineHasTheNodesColor) {
  const DrawingSession session;
  exportSession().currentNode->colorIndex = 5;
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  const std::vector<Block> blocks = blocksIn(session.Body(), "GO_0");
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_EQ(blocks[0].entities.front().Value(62), "5");
}

TEST(FaceSetCallback, NodeAndEveryAncestorAreMarked) {
  DrawingSession session;
  HostNode outer;
  HostNode inner;
  DXF2dOpenNode(outer.Attribute());
  DXF2dOpenNode(inner.Attribute());
  EXPECT_TRUE(drawFaces(kTriangle, kTriangleFace));
  for (const BlockNode* node = exportSession().currentNode; node != nullptr; node = node->parent) {
    EXPECT_TRUE(node->hasGeometry) << node->blockNumber;
  }
  const std::string body = session.Close();
  for (const char* container : {"GO_0", "GO_1"}) {
    const std::vector<Block> blocks = blocksIn(body, container);
    ASSERT_EQ(blocks.size(), 1U) << container;
    EXPECT_EQ(entitiesOfType(blocks[0].entities, "INSERT").size(), 1U) << container;
  }
}

TEST(FaceSetCallback, ReversedFacesOfAnOpenSetHaveTheSameBorder) {
  const auto reversed =
      drawnAtTheRoot([] { return faceSetCallback(kTriangle, kTriangleFace, true, false); });
  EXPECT_EQ(reversed, (std::vector<PlanPlaces>{{{0, 0}, {4, 0}, {0, 3}, {0, 0}}}));
}

TEST(FaceSetCallback, PointsThatTheMatrixTakesToInfinityAreInNoEdge) {
  const DrawingSession session;
  HostNode host;
  double data[16];
  host.node.matrix.GetData(data);
  data[0] = 1e10;
  host.node.matrix.Init(data);
  DXF2dOpenNode(host.Attribute());
  EXPECT_TRUE(drawFaces({0, 0, 0, 1, 1, 0, 1e300, 0, 0}, {0, 1, 2, 0, -6}));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_1"), (std::vector<PlanPlaces>{{{0, 0}, {1e10, 1}}}));
}

TEST(FaceSetCallback, ReturnsFalseWithoutAFileOrInput) {
  EXPECT_FALSE(drawFaces(kTriangle, kTriangleFace));
  const DrawingSession session;
  EXPECT_FALSE(drawFaces({}, kTriangleFace));
  EXPECT_FALSE(drawFaces(kTriangle, {}));
  EXPECT_TRUE(session.Body().empty());
}

TEST(FaceSetCallback, ReturnsFalseWithoutACurrentNode) {
  const DrawingSession session;
  DXF2dCloseNode();
  EXPECT_FALSE(drawFaces(kTriangle, kTriangleFace));
  EXPECT_TRUE(session.Body().empty());
}

TEST(FaceSetCallback, FewerCoordinatesThanAPointHaveNoOutline) {
  const DrawingSession session;
  EXPECT_TRUE(drawFaces({1, 2}, kTriangleFace));
  EXPECT_TRUE(session.Body().empty());
}

}  // namespace dxf2d
