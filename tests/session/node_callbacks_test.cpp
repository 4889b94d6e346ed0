#include <gtest/gtest.h>

#include <memory>
#include <numbers>

#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"
#include "tests/support/node_without_writer.h"

namespace dxf2d {

namespace {

ExportSession& state() { return exportSession(); }

void receiveColor(double red, double green, double blue) {
  const double color[3] = {red, green, blue};
  DXF2dMaterial(nullptr, color, nullptr, nullptr, nullptr, nullptr);
}

KtMatrix turnedAboutZ(double angle) {
  KtMatrix matrix;
  matrix.Rotate(0, 0, 1, angle);
  return matrix;
}

}  // namespace

TEST(OpenNode, RecordHasNumberNamesAndParent) {
  HostNode host(u"graphic", u"object", u"real");
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  const BlockNode* node = state().currentNode;
  EXPECT_EQ(node->blockNumber, 1U);
  EXPECT_EQ(node->graphicName, u"graphic");
  EXPECT_EQ(node->objectId, u"object");
  EXPECT_EQ(node->realObjectId, u"real");
  EXPECT_EQ(node->parent, state().root);
  EXPECT_EQ(state().lastNode, node);
  EXPECT_EQ(state().blockCounter, 2U);
  EXPECT_EQ(state().depth, 1);
  DXF2dCloseNode();
  EXPECT_EQ(state().currentNode, state().root);
  EXPECT_EQ(state().lastNode, node);
  EXPECT_EQ(state().depth, 0);
}

TEST(OpenNode, NullAttributeGivesANamelessNodeOnItsParentsMatrix) {
  HostNode host;
  host.node.matrix.SetTranslation(1, 2, 3);
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  DXF2dOpenNode(nullptr);
  EXPECT_EQ(state().currentNode->matrix.Data()[12], 1.0);
  EXPECT_TRUE(state().currentNode->graphicName.empty());
  EXPECT_TRUE(state().currentNode->objectId.empty());
}

TEST(OpenNode, MatrixIsParentTimesLocal) {
  HostNode outer;
  outer.node.matrix.SetTranslation(10, 0, 0);
  outer.node.matrix.Rotate(0, 0, 1, std::numbers::pi / 2);
  HostNode inner;
  inner.node.matrix.SetTranslation(2, 0, 0);
  DrawingSession session;
  DXF2dOpenNode(outer.Attribute());
  DXF2dOpenNode(inner.Attribute());
  // Two units along the outer node's turned x axis.
  EXPECT_NEAR(state().currentNode->matrix.Data()[12], 10.0, 1e-12);
  EXPECT_NEAR(state().currentNode->matrix.Data()[13], 2.0, 1e-12);
}

TEST(OpenNode, WithoutAnExportDoesNothing) {
  HostNode host(u"g", u"A", u"A");
  { DrawingSession session; }
  DXF2dOpenNode(host.Attribute());
  EXPECT_EQ(state().currentNode, nullptr);
  EXPECT_EQ(state().depth, 0);
  EXPECT_TRUE(state().reuseMap.empty());
}

TEST(OpenNode, CopyOfItsNamesOutlivesTheHosts) {
  DrawingSession session;
  {
    HostNode host(u"a graphic name of some length", u"A", u"A");
    DXF2dOpenNode(host.Attribute());
  }
  EXPECT_EQ(state().currentNode->graphicName, u"a graphic name of some length");
}

TEST(Reuse, FirstOccurrenceIsOpenedAndSecondReused) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  DrawingSession session;
  EXPECT_FALSE(DXF2DReuseCallback(first.Attribute()));
  EXPECT_EQ(state().blockCounter, 1U);
  DXF2dOpenNode(first.Attribute());
  DXF2dCloseNode();
  EXPECT_TRUE(DXF2DReuseCallback(second.Attribute()));
  EXPECT_EQ(state().currentNode->Name(), CString(u"GO_1\n"));
  EXPECT_EQ(state().currentNode->objectId, u"B");
  EXPECT_EQ(state().lastNode, state().currentNode);
  EXPECT_EQ(state().depth, 1);
  DXF2dCloseNode();
  DXF2dOpenNode(nullptr);
  EXPECT_EQ(state().currentNode->Name(), CString(u"GO_3\n"));
}

TEST(Reuse, TurnAboutZIsAllowed) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  second.node.matrix = turnedAboutZ(2.5);
  DrawingSession session;
  walkLeaf(first);
  EXPECT_TRUE(DXF2DReuseCallback(second.Attribute()));
}

TEST(Reuse, TiltedOccurrenceGetsABlockOfItsOwn) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  second.node.matrix.Rotate(1, 0, 0, 0.031);
  DrawingSession session;
  walkLeaf(first, false);
  EXPECT_FALSE(DXF2DReuseCallback(second.Attribute()));
  EXPECT_EQ(state().currentNode, state().root);
  EXPECT_EQ(state().blockCounter, 2U);
  DXF2dOpenNode(second.Attribute());
  EXPECT_EQ(state().currentNode->Name(), CString(u"GO_2\n"));
}

TEST(Reuse, TiltOfAnAncestorCounts) {
  HostNode first(u"g", u"A", u"A");
  HostNode tilted;
  tilted.node.matrix.Rotate(0, 1, 0, 0.5);
  HostNode second(u"g", u"B", u"B");
  DrawingSession session;
  walkLeaf(first, false);
  DXF2dOpenNode(tilted.Attribute());
  EXPECT_FALSE(DXF2DReuseCallback(second.Attribute()));
}

TEST(Reuse, ColoredOccurrenceGetsABlockOfItsOwn) {
  HostNode first(u"g", u"A", u"A");
  HostNode colored(u"g", u"B", u"B");
  colored.node.color = {1, 0, 0};
  HostNode material(u"g", u"C", u"C");
  material.node.material = std::make_unique<KtMaterial>();
  DrawingSession session;
  walkLeaf(first, false);
  EXPECT_FALSE(DXF2DReuseCallback(colored.Attribute()));
  EXPECT_FALSE(DXF2DReuseCallback(material.Attribute()));
  EXPECT_EQ(state().blockCounter, 2U);
}

TEST(Reuse, RefusedOccurrenceLeavesNoChild) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  second.node.color = {1, 0, 0};
  DrawingSession session;
  walkLeaf(first, false);
  DXF2DReuseCallback(second.Attribute());
  EXPECT_EQ(session.Close(), drawingEndText(insertText(1)));
}

TEST(Reuse, NeedsARealObjectIdAndAGraphicName) {
  HostNode first(u"g", u"A", u"A");
  HostNode unreal(u"g", u"B", u"");
  HostNode unnamed(u"", u"C", u"C");
  DrawingSession session;
  walkLeaf(first, false);
  EXPECT_FALSE(DXF2DReuseCallback(unreal.Attribute()));
  EXPECT_FALSE(DXF2DReuseCallback(unnamed.Attribute()));
  EXPECT_FALSE(DXF2DReuseCallback(nullptr));
}

TEST(Reuse, NamesAreComparedExactly) {
  HostNode first(u"graphic", u"A", u"A");
  HostNode other(u"Graphic", u"B", u"B");
  HostNode longer(u"graphic ", u"C", u"C");
  DrawingSession session;
  walkLeaf(first, false);
  EXPECT_FALSE(DXF2DReuseCallback(other.Attribute()));
  EXPECT_FALSE(DXF2DReuseCallback(longer.Attribute()));
}

TEST(Reuse, OfTwoRegistrationsTheLaterIsKept) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  HostNode third(u"g", u"C", u"C");
  DrawingSession session;
  walkLeaf(first, false);
  walkLeaf(second, false);
  ASSERT_TRUE(DXF2DReuseCallback(third.Attribute()));
  EXPECT_EQ(state().currentNode->Name(), CString(u"GO_2\n"));
}

TEST(Reuse, ReusedNodeDoesNotRegister) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  DrawingSession session;
  walkLeaf(first, false);
  DXF2DReuseCallback(second.Attribute());
  DXF2dCloseNode();
  EXPECT_EQ(state().reuseMap.at(u"g").second->objectId, u"A");
}

TEST(Reuse, FindsANodeThatIsStillOpen) {
  HostNode outer(u"g", u"A", u"A");
  HostNode inner(u"g", u"B", u"B");
  DrawingSession session;
  DXF2dOpenNode(outer.Attribute());
  EXPECT_TRUE(DXF2DReuseCallback(inner.Attribute()));
  EXPECT_EQ(state().currentNode->Name(), CString(u"GO_1\n"));
}

TEST(Reuse, WithoutACurrentNodeIsRefused) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  DrawingSession session;
  walkLeaf(first, false);
  DXF2dCloseNode();
  ASSERT_EQ(state().currentNode, nullptr);
  EXPECT_FALSE(DXF2DReuseCallback(second.Attribute()));
}

TEST(Registration, NodeWhoseGraphicNameCannotBeReadIsCounted) {
  HostNode unnamed(u"", u"A", u"A");
  DrawingSession session;
  const std::uint32_t before = state().unnamedReusableCount;
  walkLeaf(unnamed, false);
  EXPECT_EQ(state().unnamedReusableCount, before + 1);
  EXPECT_TRUE(state().reuseMap.empty());
}

TEST(Registration, CountOfUnnamedNodesOutlivesTheExport) {
  HostNode unnamed(u"", u"A", u"A");
  const std::uint32_t before = state().unnamedReusableCount;
  for (int i = 0; i < 2; ++i) {
    DrawingSession session;
    walkLeaf(unnamed, false);
  }
  EXPECT_EQ(state().unnamedReusableCount, before + 2);
}

TEST(Registration, AsksForTheFourConditions) {
  HostNode unreal(u"a", u"A", u"");
  HostNode undrawable(u"b", u"B", u"B");
  undrawable.node.hasGraphicItem = false;
  HostNode tilted(u"c", u"C", u"C");
  tilted.node.matrix.Rotate(1, 0, 0, 1);
  HostNode colored(u"d", u"D", u"D");
  colored.node.color = {0, 0, 0};
  HostNode plain(u"e", u"", u"E");
  DrawingSession session;
  const std::uint32_t unnamed = state().unnamedReusableCount;
  for (HostNode* host : {&unreal, &undrawable, &tilted, &colored, &plain}) {
    walkLeaf(*host, false);
  }
  EXPECT_EQ(state().reuseMap.size(), 1U);
  EXPECT_TRUE(state().reuseMap.contains(u"e"));
  EXPECT_EQ(state().reuseMap.at(u"e").first, &plain.node);
  EXPECT_EQ(state().unnamedReusableCount, unnamed);
}

TEST(Registration, UnnamedNodesThatFailAnotherConditionAreNotCounted) {
  HostNode colored(u"", u"A", u"A");
  colored.node.color = {0, 0, 0};
  DrawingSession session;
  const std::uint32_t before = state().unnamedReusableCount;
  walkLeaf(colored, false);
  EXPECT_EQ(state().unnamedReusableCount, before);
}

TEST(Color, RootHasNoneUntilAMaterialComes) {
  DrawingSession session;
  EXPECT_EQ(state().currentNode->colorIndex, -1);
  receiveColor(0, 0, 1);
  EXPECT_EQ(state().currentNode->colorIndex, 5);
}

TEST(Color, ChildTakesItsParentsAtCreation) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  receiveColor(1, 0, 0);
  DXF2dOpenNode(nullptr);
  const BlockNode* child = state().currentNode;
  EXPECT_EQ(child->colorIndex, 1);
  DXF2dCloseNode();
  receiveColor(0, 1, 0);
  EXPECT_EQ(child->colorIndex, 1);
  DXF2dOpenNode(nullptr);
  EXPECT_EQ(state().currentNode->colorIndex, 3);
}

TEST(Color, ReusedNodeTakesItsParents) {
  HostNode first(u"g", u"A", u"A");
  HostNode second(u"g", u"B", u"B");
  DrawingSession session;
  walkLeaf(first, false);
  receiveColor(1, 0, 0);
  ASSERT_TRUE(DXF2DReuseCallback(second.Attribute()));
  EXPECT_EQ(state().currentNode->colorIndex, 1);
}

TEST(MatrixCallback, MultipliesTheCurrentNodesMatrix) {
  HostNode host;
  host.node.matrix = turnedAboutZ(std::numbers::pi / 2);
  KtMatrix step;
  step.SetTranslation(3, 0, 0);
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  DXF2dMatrix(step.Data());
  EXPECT_NEAR(state().currentNode->matrix.Data()[12], 0.0, 1e-12);
  EXPECT_NEAR(state().currentNode->matrix.Data()[13], 3.0, 1e-12);
  EXPECT_EQ(state().root->matrix.Data()[13], 0.0);
}

TEST(MatrixCallback, WithoutANodeOrAMatrixDoesNothing) {
  const KtMatrix step;
  { DrawingSession session; }
  DXF2dMatrix(step.Data());
  DrawingSession session;
  DXF2dMatrix(nullptr);
  EXPECT_EQ(state().root->matrix.Data()[0], 1.0);
}

TEST(EmptyCallbacks, LevelsOfDetailAndBoundsChangeNothing) {
  const double corner[3] = {0, 0, 0};
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  const BlockNode* node = state().currentNode;
  DXF2dOpenLODNode({1, 2}, 3);
  DXF2dBBox(corner, corner, 1);
  DXF2dBBox(nullptr, nullptr, 0);
  DXF2dCloseLODNode();
  DXF2dCloseLODNode();
  EXPECT_EQ(state().currentNode, node);
  EXPECT_EQ(state().blockCounter, 2U);
  EXPECT_TRUE(node->children.empty());
  EXPECT_EQ(session.Body(), "");
}

TEST(Material, WithoutAWriterTheColorStays) {
  const NodeWithoutWriter session;
  const double red[3] = {1, 0, 0};
  DXF2dMaterial(nullptr, red, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(exportSession().currentNode->colorIndex, -1);
}

}  // namespace dxf2d
