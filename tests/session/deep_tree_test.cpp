// Scenes far deeper and wider than a stack or a quadratic step would bear.
#include <gtest/gtest.h>

#include <string>

#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

constexpr int kMillion = 1000000;

void openNested(int count, KtGraphicAttribute* attribute = nullptr) {
  for (int i = 0; i < count; ++i) {
    DXF2dOpenNode(attribute);
  }
}

}  // namespace

TEST(DeepTree, MillionNestedNodesAreOpenedAndClosed) {
  DrawingSession session;
  openNested(kMillion);
  EXPECT_EQ(exportSession().depth, kMillion);
  for (int i = 0; i < kMillion; ++i) {
    DXF2dCloseNode();
  }
  EXPECT_EQ(exportSession().currentNode, exportSession().root);
  EXPECT_EQ(session.Close(), drawingEndText(""));
}

TEST(DeepTree, MillionNestedNodesMayBeLeftOpen) {
  HostNode leaf(u"g", u"A");
  DrawingSession session;
  openNested(kMillion - 1);
  DXF2dOpenNode(leaf.Attribute());
  EXPECT_EQ(session.Close(), drawingEndText(insertText(kMillion)));
}

TEST(DeepTree, GeometryAtTheBottomGivesEveryAncestorItsBlock) {
  constexpr int kDepth = 50000;
  DrawingSession session;
  openNested(kDepth);
  // More than once: marking the chain again must not walk it again.
  for (int i = 0; i < 20000; ++i) {
    drawUnitLine();
  }
  const std::string drawing = session.Close();
  const std::string lastBlocks = blockText(1, insertText(2)) + blockText(0, insertText(1));
  EXPECT_TRUE(drawing.ends_with(lastBlocks + drawingEndText("")));
  const std::string deepest = blockText(kDepth, unitLineText());
  EXPECT_EQ(drawing.find(blockText(kDepth - 1, insertText(kDepth))), 20000 * deepest.size());
}

TEST(DeepTree, GeometryBelowAnObjectFindsItsFrameAtAnyDepth) {
  HostNode object(u"g", u"A", u"A");
  object.node.matrix.SetTranslation(5, 0, 0);
  DrawingSession session;
  DXF2dOpenNode(object.Attribute());
  openNested(100000);
  for (int i = 0; i < 20000; ++i) {
    drawUnitLine();
  }
  EXPECT_TRUE(session.Body().ends_with(blockText(100001, unitLineText())));
}

TEST(WideTree, MillionSiblingsAreOpenedAndClosed) {
  HostNode object(u"", u"A");
  DrawingSession session;
  for (int i = 0; i < kMillion; ++i) {
    DXF2dOpenNode(object.Attribute());
    DXF2dCloseNode();
  }
  EXPECT_EQ(session.Close(), drawingEndText(""));
}

TEST(WideTree, EverySiblingIsPlacedInOrder) {
  constexpr int kCount = 50000;
  HostNode object(u"g", u"A");
  std::string placements;
  DrawingSession session;
  for (int i = 1; i <= kCount; ++i) {
    DXF2dOpenNode(object.Attribute());
    DXF2dCloseNode();
    placements += insertText(i);
  }
  EXPECT_EQ(session.Close(), drawingEndText(placements));
}

TEST(WideTree, EverySiblingIsReused) {
  constexpr int kCount = 50000;
  HostNode object(u"g", u"A", u"A");
  std::string placements = insertText(1);
  DrawingSession session;
  walkLeaf(object);
  for (int i = 1; i < kCount; ++i) {
    ASSERT_TRUE(DXF2DReuseCallback(object.Attribute()));
    DXF2dCloseNode();
    placements += insertText(1);
  }
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(placements));
}

TEST(WideTree, PruningTakesEveryGroupOfObjects) {
  constexpr int kCount = 20000;
  HostNode group(u"group", u"G");
  HostNode part(u"", u"P");
  DrawingSession session;
  for (int i = 0; i < kCount; ++i) {
    DXF2dOpenNode(group.Attribute());
    walkLeaf(part);
    DXF2dCloseNode();
  }
  EXPECT_TRUE(session.Close().ends_with(drawingEndText("")));
}

}  // namespace dxf2d
