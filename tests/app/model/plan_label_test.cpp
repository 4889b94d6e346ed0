#include "app/model/plan_label.h"

#include <gtest/gtest.h>

#include "tests/app/model/label_reading.h"

namespace dxf2d {
namespace {

PlanExtent extentTo(double x, double y) {
  PlanExtent extent;
  extent.Add(0.0, 0.0);
  extent.Add(x, y);
  return extent;
}

TEST(LabelNode, SaysItsTextCenteredOnItsOwnOrigin) {
  const ReadLabel label = readLabel(makeLabelNode({u"Office", {3.0, 4.0}, 2.5}, 7, u"label"));
  EXPECT_EQ(label.height, 2.5);
  EXPECT_EQ(label.anchor, (std::array<double, 3>{}));
  EXPECT_EQ(label.angle, 0.0);
  EXPECT_EQ(label.alignment, u'C');
  EXPECT_EQ(label.lines, (std::vector<std::u16string>{u"Office"}));
}

TEST(LabelNode, StandsAtTheCenterToTheLastBit) {
  const KtSceneNode node = makeLabelNode({u"a", {1234567.1, -0.1}, 1.0}, 7, u"label");
  EXPECT_EQ(node.matrix.Data()[12], 1234567.1);
  EXPECT_EQ(node.matrix.Data()[13], -0.1);
  EXPECT_EQ(node.matrix.Data()[14], 0.0);
  EXPECT_EQ(node.matrix.Data()[0], 1.0);
}

TEST(LabelNode, IsAnObjectThatNoInstanceCanBe) {
  const KtSceneNode node = makeLabelNode({u"a", {}, 1.0}, 7, u"label 7");
  EXPECT_EQ(node.objectId, u"label 7");
  EXPECT_EQ(node.graphicName, u"label 7");
  EXPECT_EQ(node.realObjectId, u"");
}

TEST(LabelNode, QuotesAndBackslashesComeBack) {
  for (const char16_t* text :
       {u"say \"hi\"", u"C:\\x", u"\\", u"\"", u"\\\"", u"a\\", u"\\U+00FC"}) {
    EXPECT_EQ(readLabel(makeLabelNode({text, {}, 1.0}, 7, u"label")).lines,
              (std::vector<std::u16string>{text}));
  }
}

TEST(LabelNode, IsDrawnWithItsPen) {
  EXPECT_EQ(makeLabelNode({u"a", {}, 1.0}, 3, u"label").label->colorIndex, 3);
}

TEST(LabelNode, UprightIsAQuarterTurn) {
  const KtSceneNode node = makeLabelNode({u"a", {3.0, 4.0}, 1.0, true}, 7, u"label");
  EXPECT_EQ(node.matrix.Data()[0], 0.0);
  EXPECT_EQ(node.matrix.Data()[1], 1.0);
  EXPECT_EQ(node.matrix.Data()[12], 3.0);
}

TEST(LabelNode, AnyHeightReadsAsTheSameNumber) {
  for (const double height : {kMinLabelHeight, 0.1, 1.0 / 3.0, 123456.789, kMaxLabelHeight}) {
    EXPECT_EQ(readLabel(makeLabelNode({u"a", {}, height}, 7, u"label")).height, height);
  }
}

TEST(LabelHeight, IsAHundredthOfTheLargerSide) {
  EXPECT_DOUBLE_EQ(labelHeightFor(extentTo(300.0, 20.0)), 3.0);
  EXPECT_DOUBLE_EQ(labelHeightFor(extentTo(-2.0, 50.0)), 0.5);
}

TEST(LabelHeight, IsNeverWhatADrawingWritesAsNothing) {
  EXPECT_EQ(labelHeightFor(extentTo(1e-9, 0.0)), kMinLabelHeight);
  EXPECT_EQ(labelHeightFor(extentTo(0.0, 0.0)), kMinLabelHeight);
}

TEST(LabelHeight, IsNeverMoreThanALabelTakes) {
  EXPECT_EQ(labelHeightFor(extentTo(1e300, 1.0)), kMaxLabelHeight);
}

}  // namespace
}  // namespace dxf2d
