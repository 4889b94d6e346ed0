#include "session/block_emission.h"

#include <gtest/gtest.h>

#include <numbers>

#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

// The drawing of one leaf object with the given matrix, as far as its placement.
std::string placementOf(const KtMatrix& matrix) {
  HostNode leaf(u"g", u"A", u"A");
  leaf.node.matrix = matrix;
  DrawingSession session;
  walkLeaf(leaf, false);
  return session.Close();
}

KtMatrix placed(double x, double y, double z) {
  KtMatrix matrix;
  matrix.SetTranslation(x, y, z);
  return matrix;
}

}  // namespace

TEST(BlockEmission, ObjectBelowTheRootIsInsertedAndPlaced) {
  HostNode leaf(u"g", u"A", u"A");
  leaf.node.matrix = placed(3, -4, 5);
  DrawingSession session;
  walkLeaf(leaf);
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(insertText(1, {"3.000000", "-4.000000"})));
}

TEST(BlockEmission, GroupOfObjectsIsWrittenAndItsPartsArePlaced) {
  HostNode group(u"group", u"G");
  HostNode left(u"left", u"L", u"L");
  HostNode right(u"right", u"R", u"R");
  right.node.matrix = placed(2, 0, 0);
  DrawingSession session;
  DXF2dOpenNode(group.Attribute());
  walkLeaf(left);
  walkLeaf(right);
  DXF2dCloseNode();
  EXPECT_EQ(session.Close(),
            blockText(2, unitLineText()) + blockText(3, unitLineText()) +
                blockText(1, insertText(2) + insertText(3)) + blockText(0, insertText(1)) +
                drawingEndText(insertText(2) + insertText(3, {"2.000000", "0.000000"})));
}

TEST(BlockEmission, GroupWhosePartsAreNotObjectsIsPlacedItself) {
  HostNode group(u"", u"G");
  HostNode part(u"part");
  group.node.matrix = placed(7, 8, 0);
  DrawingSession session;
  DXF2dOpenNode(group.Attribute());
  walkLeaf(part);
  DXF2dCloseNode();
  EXPECT_TRUE(session.Close().ends_with(drawingEndText(insertText(1, {"7.000000", "8.000000"}))));
}

TEST(BlockEmission, TiltedLeafIsPlacedAtTheOrigin) {
  KtMatrix matrix = placed(5, 6, 7);
  matrix.Rotate(1, 0, 0, 0.011);
  matrix.Rotate(0, 0, 1, 1);
  EXPECT_EQ(placementOf(matrix), drawingEndText(insertText(1)));
}

TEST(BlockEmission, NegligibleRotationIsNotWritten) {
  KtMatrix matrix;
  matrix.Rotate(0, 0, 1, 0.0005);
  EXPECT_EQ(placementOf(matrix), drawingEndText(insertText(1)));
}

TEST(BlockEmission, RotationIsWrittenInDegrees) {
  KtMatrix matrix;
  matrix.Rotate(0, 0, 1, 0.5);
  EXPECT_EQ(placementOf(matrix), drawingEndText(insertText(1, kOriginText, "28.647890")));
}

TEST(BlockEmission, LeafWithoutAGraphicNameIsNeverPlaced) {
  HostNode leaf(u"", u"A", u"A");
  DrawingSession session;
  walkLeaf(leaf);
  EXPECT_EQ(session.Close(),
            blockText(1, unitLineText()) + blockText(0, insertText(1)) + drawingEndText(""));
}

TEST(BlockEmission, LeafWithoutAnObjectIdIsNeverPlaced) {
  HostNode leaf(u"g", u"", u"A");
  DrawingSession session;
  walkLeaf(leaf);
  EXPECT_TRUE(session.Close().ends_with(drawingEndText("")));
}

TEST(BlockEmission, LeafIsPlacedWhetherOrNotItHasGeometry) {
  HostNode leaf(u"g", u"A");
  DrawingSession session;
  walkLeaf(leaf, false);
  EXPECT_EQ(session.Close(), drawingEndText(insertText(1)));
}

TEST(BlockEmission, ReusedLeafIsPlacedUnderTheNameThatItBorrows) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  second.node.matrix = placed(9, 0, 0);
  DrawingSession session;
  walkLeaf(first);
  ASSERT_TRUE(DXF2DReuseCallback(second.Attribute()));
  DXF2dCloseNode();
  EXPECT_EQ(session.Close(),
            blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                drawingEndText(insertText(1) + insertText(1, {"9.000000", "0.000000"})));
}

TEST(BlockEmission, InnerNodeWithoutGeometryBelowHasNoBlockAndNoPlace) {
  HostNode group(u"group", u"G");
  HostNode part(u"part");
  DrawingSession session;
  DXF2dOpenNode(group.Attribute());
  walkLeaf(part, false);
  DXF2dCloseNode();
  EXPECT_EQ(session.Close(), drawingEndText(""));
}

TEST(BlockEmission, WritingABlockDoesNotMarkItsNode) {
  // Unmarked by hand, the group still gets its block for the child, and the root inserts nothing.
  HostNode group(u"group", u"G");
  DrawingSession session;
  DXF2dOpenNode(group.Attribute());
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  DXF2dCloseNode();
  DXF2dCloseNode();
  ExportSession& state = exportSession();
  BlockNode* const groupNode = state.root->children.front();
  state.root->hasGeometry = false;
  groupNode->hasGeometry = false;
  EXPECT_EQ(session.Close(), blockText(2, unitLineText()) + blockText(1, insertText(2)) +
                                 drawingEndText(insertText(1)));
}

TEST(BlockEmission, ChildrenWithoutGeometryAreNotInserted) {
  HostNode group(u"", u"G");
  DrawingSession session;
  DXF2dOpenNode(group.Attribute());
  DXF2dOpenNode(nullptr);
  DXF2dCloseNode();
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  DXF2dCloseNode();
  DXF2dCloseNode();
  EXPECT_EQ(session.Close(), blockText(3, unitLineText()) + blockText(1, insertText(3)) +
                                 blockText(0, insertText(1)) + drawingEndText(insertText(1)));
}

TEST(BlockEmission, NodeWithGeometryAndDrawnChildrenHasTwoBlocks) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  DXF2dCloseNode();
  DXF2dCloseNode();
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(2, unitLineText()) +
                                 blockText(1, insertText(2)) + blockText(0, insertText(1)) +
                                 drawingEndText(""));
}

TEST(BlockEmission, GeometryOfTheRootIsItsOwnBlock) {
  DrawingSession session;
  drawUnitLine();
  EXPECT_EQ(session.Close(), blockText(0, unitLineText()) + drawingEndText(""));
}

TEST(BlockEmission, ReservedFlagHasNoEffect) {
  HostNode leaf(u"g", u"A", u"A");
  std::string bodies[2];
  for (const bool flag : {false, true}) {
    DrawingSession session;
    walkLeaf(leaf);
    exportSession().root->reservedFlag = flag;
    exportSession().root->children.front()->reservedFlag = flag;
    bodies[flag ? 1 : 0] = session.Close();
  }
  EXPECT_EQ(bodies[0], bodies[1]);
}

TEST(BlockEmission, WithoutANodeOrAWriterNothingHappens) {
  ExportSession session;
  BlockNode leaf;
  leaf.objectId = u"A";
  leaf.graphicName = u"g";
  writeBlocks(session, nullptr);
  writeBlocks(session, &leaf);
  EXPECT_TRUE(session.insertList.empty());
}

TEST(PruneInsertList, TakesOutObjectsMadeOfObjects) {
  BlockNode whole;
  BlockNode part;
  BlockNode plain;
  BlockNode bare;
  part.objectId = u"P";
  whole.children.push_back(&bare);
  whole.children.push_back(&part);
  BlockNode bareChild;
  plain.children.push_back(&bareChild);
  std::vector<BlockNode*> list = {&part, &whole, &plain};
  pruneInsertList(list);
  EXPECT_EQ(list, (std::vector<BlockNode*>{&part, &plain}));
}

TEST(PruneInsertList, LooksAtDirectChildrenOnly) {
  BlockNode grandparent;
  BlockNode parent;
  BlockNode object;
  object.objectId = u"O";
  parent.children.push_back(&object);
  grandparent.children.push_back(&parent);
  std::vector<BlockNode*> list = {&object, &parent, &grandparent};
  pruneInsertList(list);
  EXPECT_EQ(list, (std::vector<BlockNode*>{&object, &grandparent}));
}

TEST(PruneInsertList, ChildThatIsNotPlacedCountsAsWell) {
  // The child has an object id but no graphic name, so that neither of the two is placed.
  HostNode whole(u"whole", u"W");
  HostNode part(u"", u"P");
  DrawingSession session;
  DXF2dOpenNode(whole.Attribute());
  walkLeaf(part);
  DXF2dCloseNode();
  EXPECT_TRUE(session.Close().ends_with(drawingEndText("")));
}

}  // namespace dxf2d
