// The block that a line set is written as.
#include <gtest/gtest.h>

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
const std::vector<double> kLine = {1, 2, 3, 4, 6, 8};
const std::vector<int> kLineRun = {0, 1, -1};

}  // namespace

TEST(LineGeometry, LineStripOfThreeIsOneOpenPolyline) {
  const auto polylines = drawnAtTheRoot([] { return DXF2dLineGeometry(kTriangle, {0, 1, 2, -6}); });
  EXPECT_EQ(polylines, (std::vector<PlanPlaces>{{{0, 0}, {4, 0}, {0, 3}}}));
}

TEST(LineGeometry, SegmentRunOfThreeIsTwoEdgesAndOfTwoIsOne) {
  EXPECT_EQ(drawnAtTheRoot([] {
              return DXF2dLineGeometry(kTriangle, {0, 1, 2, -1});
            }),
            (std::vector<PlanPlaces>{{{0, 0}, {4, 0}, {0, 3}}}));
  EXPECT_EQ(drawnAtTheRoot([] {
              return DXF2dLineGeometry(kTriangle, {0, 1, -1});
            }),
            (std::vector<PlanPlaces>{{{0, 0}, {4, 0}}}));
}

TEST(LineGeometry, EdgeThatTwoTrianglesShareIsHidden) {
  const std::vector<PlanPlaces> square = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}};
  const std::vector<double> coords = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 9};
  EXPECT_EQ(drawnAtTheRoot([&] {
              return DXF2dLineGeometry(coords, {0, 1, 2, -7, 0, 2, 3, -7});
            }),
            square);
  EXPECT_EQ(drawnAtTheRoot([&] {
              return DXF2dLineGeometry(coords, {0, 1, 2, -7, 3, 2, 0, -7});
            }),
            square);
}

TEST(LineGeometry, LineAlongTheViewAloneGivesTheNodeNoBlock) {
  DrawingSession session;
  EXPECT_TRUE(DXF2dLineGeometry({1, 1, 0, 1, 1, 5}, kLineRun));
  EXPECT_FALSE(exportSession().root->hasGeometry);
  EXPECT_TRUE(blocksOf(entitiesOf(groupsOf(session.Close()))).empty());
}

TEST(LineGeometry, LineAlongTheViewIsDroppedFromOthers) {
  const auto polylines = drawnAtTheRoot([] {
    return DXF2dLineGeometry({1, 1, 0, 1, 1, 5, 2, 1, 5}, {0, 1, 2, -6});
  });
  EXPECT_EQ(polylines, (std::vector<PlanPlaces>{{{1, 1}, {2, 1}}}));
}

TEST(LineGeometry, BelowARealObjectTheNodeIsPlacedInTheObjectsFrame) {
  const DrawingSession session;
  HostNode object(u"g", u"o", u"r");
  HostNode part;
  object.node.matrix.SetTranslation(10, 20, 0);
  part.node.matrix.SetTranslation(1, 2, 0);
  DXF2dOpenNode(object.Attribute());
  DXF2dOpenNode(part.Attribute());
  EXPECT_TRUE(DXF2dLineGeometry({0, 0, 0, 1, 0, 0}, kLineRun));
  EXPECT_EQ(polylinesIn(session.Body(), "GO_2"), (std::vector<PlanPlaces>{{{1, 2}, {2, 2}}}));
}

TEST(LineGeometry, NodeAndEveryAncestorAreMarked) {
  const DrawingSession session;
  HostNode host;
  DXF2dOpenNode(host.Attribute());
  EXPECT_TRUE(DXF2dLineGeometry(kLine, kLineRun));
  EXPECT_TRUE(exportSession().currentNode->hasGeometry);
  EXPECT_TRUE(exportSession().root->hasGeometry);
}

TEST(LineGeometry, ReturnsFalseWithoutAFileANodeOrInput) {
  EXPECT_FALSE(DXF2dLineGeometry(kLine, kLineRun));
  const DrawingSession session;
  EXPECT_FALSE(DXF2dLineGeometry({}, kLineRun));
  EXPECT_FALSE(DXF2dLineGeometry(kLine, {}));
  DXF2dCloseNode();
  EXPECT_FALSE(DXF2dLineGeometry(kLine, kLineRun));
  EXPECT_TRUE(session.Body().empty());
}

}  // namespace dxf2d
