#include "shapes/cylinder_writer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/shapes/shape_session.h"
#include "tests/support/expected_groups.h"
#include "tests/support/node_without_writer.h"

namespace dxf2d {

namespace {

const std::vector<double> kSize = {1, 3};

// What the side outline of radius 1 and height 3 leaves in the file: the trapezoid, and the
// beginning of the center line up to the end point that there is not.
std::string brokenSideOutline() {
  return blockHeadText(1) +
         polylineText(254,
                      {{"0.000000", "-1.000000"},
                       {"0.000000", "2.000000"},
                       {"4.000000", "2.000000"},
                       {"2.000000", "-1.000000"}},
                      true) +
         "  0\nLINE\n  8\n0\n 62\n254\n" + pointText(10, {"2.000000", "2.000000"});
}

void expectOutOfRange(const std::vector<double>& parameters) {
  try {
    writeCylinder(parameters);
    FAIL() << "the center line has an end";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
}

}  // namespace

TEST(CylinderWriter, SideOutlineEndsAtItsCenterLine) {
  const ShapeSession session;
  expectOutOfRange(kSize);
  EXPECT_EQ(session.Body(), brokenSideOutline());
  EXPECT_TRUE(session.IsMarked());
}

TEST(CylinderWriter, ExportAfterTheSideOutlinesErrorIsRight) {
  HostNode leaf(u"g", u"A", u"A");
  {
    ShapeSession broken;
    expectOutOfRange(kSize);
    EXPECT_EQ(broken.Close(),
              brokenSideOutline() + blockText(0, insertText(1)) + drawingEndText(""));
  }
  DrawingSession session;
  walkLeaf(leaf);
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(insertText(1)));
}

TEST(CylinderWriter, TranslatedNodeIsNotTurned) {
  KtMatrix matrix;
  matrix.SetTranslation(10, 20, 30);
  const ShapeSession session(matrix);
  expectOutOfRange(kSize);
  EXPECT_NE(session.Body().find(pointText(10, {"10.000000", "19.000000"})), std::string::npos);
}

TEST(CylinderWriter, ScaledNodeIsNotTurned) {
  const double scale[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
  KtMatrix matrix;
  matrix.Init(scale);
  const ShapeSession session(matrix);
  expectOutOfRange(kSize);
}

TEST(CylinderWriter, ReturnsFalseForTheSlightestTurn) {
  for (const KtMatrix& matrix : {turned(0, 0, 1, 1e-12), turned(1, 0, 0, 1e-12)}) {
    const ShapeSession session(matrix);
    EXPECT_FALSE(writeCylinder(kSize));
    EXPECT_TRUE(session.IsUntouched());
  }
}

TEST(CylinderWriter, SideOutlineIsWrittenOnATurnedNodeWhenAskedDirectly) {
  const ShapeSession session(turned(0, 0, 1, 1));
  CylinderWriter writer;
  writer.SetNode(session.Node());
  EXPECT_THROW(writer.WriteSideOutline(kSize), std::out_of_range);
}

void expectRefused(const std::vector<double>& sizes) {
  const ShapeSession session;
  EXPECT_FALSE(writeCylinder(sizes));
  CylinderWriter writer;
  writer.SetNode(session.Node());
  EXPECT_FALSE(writer.WriteSideOutline(sizes));
  EXPECT_FALSE(writer.WriteOctagon(sizes));
  EXPECT_TRUE(session.IsUntouched());
}

TEST(CylinderWriter, ReturnsFalseForAWrongNumberOfParameters) {
  for (const std::vector<double>& sizes :
       {std::vector<double>{}, std::vector<double>{1}, std::vector<double>{1, 2, 3}}) {
    expectRefused(sizes);
  }
}

TEST(CylinderWriter, ReturnsFalseForSizesNotAboveZero) {
  for (const std::vector<double>& sizes :
       {std::vector<double>{0, 3}, std::vector<double>{1, 0}, std::vector<double>{-1, 3},
        std::vector<double>{1, -3}}) {
    expectRefused(sizes);
  }
}

TEST(CylinderWriter, ReturnsFalseWithoutANode) {
  const ShapeSession session;
  CylinderWriter writer;
  EXPECT_FALSE(writer.WriteCylinder(nullptr, kSize));
  EXPECT_FALSE(writer.WriteSideOutline(kSize));
  EXPECT_FALSE(writer.WriteOctagon(kSize));
  writer.WriteExtrudedCircle(nullptr, 1, 1);
  EXPECT_TRUE(session.IsUntouched());
}

TEST(CylinderWriter, ReturnsFalseWithoutACurrentNode) {
  { DrawingSession session; }
  EXPECT_FALSE(writeCylinder(kSize));
}

TEST(CylinderWriter, OctagonHasEightCornersClockwise) {
  const ShapeSession session;
  CylinderWriter writer;
  writer.SetNode(session.Node());
  EXPECT_TRUE(writer.WriteOctagon(kSize));
  EXPECT_TRUE(session.IsMarked());
  // What the sines of whole turns leave is negative zero in six decimals.
  EXPECT_EQ(session.Body(), blockText(1, polylineText(254,
                                                      {{"-0.000000", "-1.000000"},
                                                       {"-0.707107", "-0.707107"},
                                                       {"-1.000000", "0.000000"},
                                                       {"-0.707107", "0.707107"},
                                                       {"0.000000", "1.000000"},
                                                       {"0.707107", "0.707107"},
                                                       {"1.000000", "-0.000000"},
                                                       {"0.707107", "-0.707107"}},
                                                      true)));
}

TEST(CylinderWriter, ExtrudedCircleByteForByte) {
  KtMatrix matrix;
  matrix.SetTranslation(5, 6, 7);
  ShapeSession session(matrix);
  session.Node()->colorIndex = 3;
  CylinderWriter writer;
  writer.WriteExtrudedCircle(session.Node(), 2.5, 4);
  EXPECT_TRUE(session.IsMarked());
  const std::string block =
      blockText(1, "  0\nCIRCLE\n  8\n0\n 62\n3\n 39\n4.000000\n 40\n2.500000\n" +
                       pointText(10, {"5.000000", "6.000000"}) +
                       " 210\n0.000000\n 220\n0.000000\n 230\n0.000000\n");
  EXPECT_EQ(session.Body(), block);
  EXPECT_TRUE(session.Close().starts_with(block));
}

TEST(CylinderWriter, ExtrusionOfATiltedCircleIsTurned) {
  const ShapeSession session(turned(1, 0, 0, -1.5707963267948966));
  CylinderWriter writer;
  writer.WriteExtrudedCircle(session.Node(), 1, 1);
  EXPECT_NE(session.Body().find(" 220\n1.000000\n"), std::string::npos);
}

TEST(CylinderWriter, ReturnsFalseWithoutAWriter) {
  const NodeWithoutWriter session;
  BlockNode* node = exportSession().currentNode;
  EXPECT_FALSE(writeCylinder(kSize));
  CylinderWriter writer;
  EXPECT_FALSE(writer.WriteCylinder(node, kSize));
  EXPECT_FALSE(writer.WriteOctagon(kSize));
  writer.WriteExtrudedCircle(node, 1, 1);
  EXPECT_TRUE(session.IsUntouched());
}

TEST(CylinderWriter, AnglesAreComparedExactly) {
  const ShapeSession session(turned(0, 0, 1, 1e-150));
  EXPECT_FALSE(writeCylinder(kSize));
  EXPECT_TRUE(session.IsUntouched());
}

}  // namespace dxf2d
