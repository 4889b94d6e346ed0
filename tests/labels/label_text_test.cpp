#include "labels/label_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "labels/label_callback.h"
#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

// The block that a label's text gives in node 1.
std::string blockOf(const std::u16string& label, int colorIndex = 1) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  EXPECT_TRUE(writeLabelText(label, colorIndex));
  return session.Body();
}

std::vector<Entity> textsOf(const std::u16string& label, int colorIndex = 1) {
  return entitiesOfType(entitiesOf(groupsOf(blockOf(label, colorIndex))), "TEXT");
}

std::string colorOf(int colorIndex, const std::u16string& rgb) {
  const std::u16string label = u"T:1 1 0 0 0 0 0 C 0 " + rgb + u" 0 \"a\"";
  return textsOf(label, colorIndex).at(0).Value(62).value_or("");
}

std::vector<double> baselines(const std::u16string& label) {
  std::vector<double> result;
  for (const Entity& text : textsOf(label)) {
    result.push_back(text.Number(20));
  }
  return result;
}

double leftEdge(const std::u16string& lines) {
  return textsOf(u"T:1 1 0 0 0 0 0 L 0 0 0 0 0 " + lines).at(0).Number(10);
}

// Whether the label is drawn on a node turned by `angle` about the axis.
bool isDrawnOn(double x, double y, double z, double angle) {
  HostNode host;
  host.node.matrix.Rotate(x, y, z, angle);
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  EXPECT_TRUE(writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"", 1));
  EXPECT_EQ(exportSession().root->hasGeometry, !session.Body().empty());
  return !session.Body().empty();
}

// The label of `angle` degrees, one line, aligned to the right.
Entity textAtAngle(const std::u16string& angle) {
  return textsOf(u"T:1 1 0 0 0 0 " + angle + u" R 0 0 0 0 0 \"abc\"").at(0);
}

constexpr char16_t kThreeLines[] = u" 0 0 0 0 0 \"a\" \"b\" \"c\"";

}  // namespace

TEST(LabelText, OneLineByteForByte) {
  EXPECT_EQ(blockOf(u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"Ab\"", 3),
            "  0\nBLOCK\n  8\n0\n  2\nGO_1\n 70\n64\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n  3\nGO_1\n"
            "  0\nTEXT\n 40\n2.500000\n 62\n3\n 10\n10.000000\n 20\n20.000000\n 30\n0.000000\n"
            " 11\n10.000000\n 21\n20.000000\n 31\n0.000000\n 72\n1\n 73\n2\n 50\n30.000000\n"
            " 41\n0.800000\n  1\nAb\n  7\nSTANDARD\n  8\n0\n"
            "  0\nENDBLK\n  8\n0\n");
}

TEST(LabelText, TwoTurnedLinesByteForByte) {
  const auto text = [](const std::string& x, const std::string& y, const std::string& line) {
    return "  0\nTEXT\n 40\n2.500000\n 62\n3\n" + pointText(10, {x, y}) + pointText(11, {x, y}) +
           " 72\n1\n 73\n2\n 50\n30.000000\n 41\n0.800000\n  1\n" + line +
           "\n  7\nSTANDARD\n  8\n0\n";
  };
  // Half a pitch, 1.875, up and down along the turned vertical.
  EXPECT_EQ(blockOf(u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"Ab\" \"second line\"", 3),
            blockText(1, text("9.062500", "21.623798", "Ab") +
                             text("10.937500", "18.376202", "second line")));
}

TEST(LabelText, CenteredLinesStandAboutTheAnchor) {
  EXPECT_EQ(baselines(u"T:1 1 0 0 0 0 0 C" + std::u16string(kThreeLines)),
            (std::vector<double>{1.5, 0, -1.5}));
  EXPECT_EQ(baselines(u"T:1 1 0 0 0 0 0 L" + std::u16string(kThreeLines)),
            (std::vector<double>{1.5, 0, -1.5}));
}

TEST(LabelText, RightAlignedLinesHangBelowTheAnchor) {
  EXPECT_EQ(baselines(u"T:1 1 0 0 0 0 0 R" + std::u16string(kThreeLines)),
            (std::vector<double>{-1.5, -3, -4.5}));
}

TEST(LabelText, AlignmentDecidesTheJustification) {
  const auto justification = [](const std::u16string& align) {
    const Entity text = textsOf(u"T:1 1 0 0 0 0 0 " + align + u" 0 0 0 0 0 \"ab\"").at(0);
    return text.Value(72).value_or("") + "/" + text.Value(73).value_or("");
  };
  EXPECT_EQ(justification(u"C"), "1/2");
  EXPECT_EQ(justification(u"L"), "0/2");
  EXPECT_EQ(justification(u"R"), "2/2");
}

TEST(LabelText, OtherAlignmentHasNoPlace) {
  for (const char16_t* align : {u"X", u"c", u"l", u"\u00e9"}) {
    const std::u16string label =
        u"T:1 1.5 0 1 2 3 45 " + std::u16string(align) + u" 0 0 0 0 0 \"ab\"";
    EXPECT_EQ(blockOf(label, 9),
              blockText(1,
                        "  0\nTEXT\n 40\n1.500000\n 62\n9\n 50\n45.000000\n 41\n0.800000\n"
                        "  1\nab\n  7\nSTANDARD\n  8\n0\n"));
  }
}

TEST(LabelText, WidthIsEstimatedFromTheWidestLine) {
  EXPECT_DOUBLE_EQ(leftEdge(u"\"abcd\" \"ab\""), -1.6);
  EXPECT_DOUBLE_EQ(leftEdge(u"\"ab\" \"abcd\""), -1.6);
  const Entity right = textsOf(u"T:1 2 0 0 0 0 0 R 0 0 0 0 0 \"abcd\"").at(0);
  EXPECT_DOUBLE_EQ(right.Number(10), 3.2);
}

TEST(LabelText, NarrowCharactersCountLess) {
  EXPECT_DOUBLE_EQ(leftEdge(u"\"iiiii\""), -0.8);
  EXPECT_DOUBLE_EQ(leftEdge(u"\"!il\""), -0.48);
  EXPECT_DOUBLE_EQ(leftEdge(u"\"I|1\""), -1.2);
}

TEST(LabelText, WidthCountsUtf16Units) { EXPECT_DOUBLE_EQ(leftEdge(u"\"\U0001F600\""), -0.8); }

TEST(LabelText, EmptyLineIsATextOfItsOwn) {
  const std::vector<Entity> texts = textsOf(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"\" \"b\"");
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0].Value(1), "");
}

TEST(LabelText, CharacterAdvanceIsNarrowForThree) {
  EXPECT_EQ(characterAdvance(u'a', 0.8), 0.8);
  for (const char16_t narrow : {u'!', u'i', u'l'}) {
    EXPECT_EQ(characterAdvance(narrow, 0.8), 0.8 * 0.4);
  }
}

TEST(LabelText, SmallAngleIsNotWrittenButTurnsTheLayout) {
  const Entity text = textsOf(u"T:1 1000 0 0 0 0 5e-4 L 0 0 0 0 0 \"ab\"").at(0);
  EXPECT_FALSE(text.Has(50));
  EXPECT_EQ(text.Value(10), "-800.000000");
  EXPECT_EQ(text.Value(20), "-0.006981");
}

TEST(LabelText, AngleAboveTheThresholdIsWritten) {
  EXPECT_EQ(textsOf(u"T:1 1 0 0 0 0 0.0011 C 0 0 0 0 0 \"a\"").at(0).Value(50), "0.001100");
  EXPECT_EQ(textsOf(u"T:1 1 0 0 0 0 -0.0011 C 0 0 0 0 0 \"a\"").at(0).Value(50), "-0.001100");
  EXPECT_FALSE(textsOf(u"T:1 1 0 0 0 0 0.001 C 0 0 0 0 0 \"a\"").at(0).Has(50));
}

TEST(LabelText, NegligibleAngleDoesNotTurnTheLayout) {
  const Entity text = textsOf(u"T:1 1e9 0 0 0 0 9e-6 L 0 0 0 0 0 \"ab\"").at(0);
  EXPECT_EQ(text.Value(20), "0.000000");
}

TEST(LabelText, ThirdCoordinateIsZeroWhateverTheAnchors) {
  const Entity text = textsOf(u"T:1 1 0 1 2 99 0 C 0 0 0 0 0 \"a\"").at(0);
  EXPECT_EQ(text.Value(30), "0.000000");
  EXPECT_EQ(text.Value(31), "0.000000");
}

TEST(LabelText, ColorIndexInsideThePaletteIsWrittenAsItIs) {
  EXPECT_EQ(colorOf(1, u"0 0 1"), "1");
  EXPECT_EQ(colorOf(255, u"0 0 1"), "255");
}

TEST(LabelText, OtherColorIndexStandsForTheLabelsColor) {
  EXPECT_EQ(colorOf(0, u"0 0 1"), "5");
  EXPECT_EQ(colorOf(256, u"0 0 1"), "5");
  EXPECT_EQ(colorOf(-1, u"0.5 0.5 0.5"), "251");
  EXPECT_EQ(colorOf(2147483647, u"1 0 0"), "1");
}

TEST(LabelText, ColorThatNoIndexIsNearIsWhite) { EXPECT_EQ(colorOf(0, u"1e9 0 0"), "7"); }

TEST(LabelText, NodesMatrixIsNotApplied) {
  HostNode host;
  host.node.matrix.SetTranslation(100, 200, 300);
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  ASSERT_TRUE(writeLabelText(u"T:1 1 0 1 2 3 0 C 0 0 0 0 0 \"a\"", 1));
  const std::vector<Entity> texts = entitiesOfType(entitiesOf(groupsOf(session.Body())), "TEXT");
  EXPECT_EQ(texts.at(0).Value(10), "1.000000");
  EXPECT_EQ(texts.at(0).Value(21), "2.000000");
}

TEST(LabelText, MarksItsNodeAndTheAncestors) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  DXF2dOpenNode(nullptr);
  ASSERT_TRUE(writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"", 1));
  EXPECT_TRUE(exportSession().currentNode->hasGeometry);
  EXPECT_TRUE(exportSession().currentNode->parent->hasGeometry);
  EXPECT_TRUE(exportSession().root->hasGeometry);
}

TEST(LabelText, LabelWithoutLinesSucceedsAndWritesNothing) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  EXPECT_TRUE(writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0", 1));
  EXPECT_EQ(session.Body(), "");
  EXPECT_FALSE(exportSession().currentNode->hasGeometry);
}

TEST(LabelText, NodeTiltedOutOfThePlaneDropsItsLabel) {
  EXPECT_TRUE(isDrawnOn(0, 0, 1, 2));
  EXPECT_TRUE(isDrawnOn(1, 0, 0, 0.0099999999));
  EXPECT_FALSE(isDrawnOn(1, 0, 0, 0.0100000001));
  EXPECT_FALSE(isDrawnOn(0, 1, 0, -0.5));
  EXPECT_FALSE(isDrawnOn(1, 0, 0, 3.141592653589793));
}

TEST(LabelText, AxisNearlyUprightIsInThePlane) {
  EXPECT_TRUE(isDrawnOn(0.009, 0, 1, 1));
  EXPECT_FALSE(isDrawnOn(0.011, 0, 1, 1));
}

TEST(LabelText, SeveralLabelsOfANodeAreBlocksOfOneName) {
  const std::u16string label = u"T:1 1 0 0 0 0 0 X 0 0 0 0 0 \"a\"";
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  ASSERT_TRUE(writeLabelText(label, 1));
  ASSERT_TRUE(writeLabelText(label, 1));
  EXPECT_EQ(session.Body(), blockOf(label) + blockOf(label));
}

TEST(LabelText, ManyLinesAreWrittenInTheirOrder) {
  std::u16string label = u"T:1 1 0 0 0 0 0 C 0 0 0 0 0";
  for (int i = 0; i < 10000; ++i) {
    label += i % 2 == 0 ? u" \"even\"" : u" \"odd\"";
  }
  const std::vector<Entity> texts = textsOf(label);
  ASSERT_EQ(texts.size(), 10000U);
  EXPECT_EQ(texts.front().Value(20), "7499.250000");
  EXPECT_EQ(texts.back().Value(20), "-7499.250000");
  EXPECT_EQ(texts.back().Value(1), "odd");
}

TEST(RotateOffset, TurnsCounterClockwise) {
  double x = 1;
  double y = 0;
  double z = 5;
  rotateOffset(x, y, z, 90, 0, 0, 1);
  EXPECT_NEAR(x, 0, 1e-15);
  EXPECT_DOUBLE_EQ(y, 1);
  EXPECT_EQ(z, 5);
}

TEST(RotateOffset, RadiansAreDegreesTimesPiDividedBy180) {
  // The product first: for this angle the other order gives another last bit.
  constexpr double kAngle = 38.0;
  KtMatrix turn;
  turn.Rotate(0, 0, 1, kAngle * 3.141592653589793 / 180.0);
  KtPoint3 expected(1e15, 0, 0);
  expected.Mult(turn);
  double x = 1e15;
  double y = 0;
  double z = 0;
  rotateOffset(x, y, z, kAngle, 0, 0, 1);
  EXPECT_EQ(x, expected.Get0());
  EXPECT_EQ(y, expected.Get1());
}

TEST(LabelText, RotationIsWrittenFromJustAboveAThousandthOfADegree) {
  EXPECT_EQ(textAtAngle(u"0.001").Value(50), std::nullopt);
  EXPECT_EQ(textAtAngle(u"-0.001").Value(50), std::nullopt);
  EXPECT_EQ(textAtAngle(u"0.0010000001").Value(50), "0.001000");
  EXPECT_EQ(textAtAngle(u"-0.0010000001").Value(50), "-0.001000");
}

TEST(LabelText, UnreadableLabelFailsOnATiltedNodeToo) {
  HostNode host;
  host.node.matrix.Rotate(1, 0, 0, 1);
  DrawingSession session;
  DXF2dOpenNode(host.Attribute());
  EXPECT_FALSE(writeLabelText(u"T:not a label", 1));
  EXPECT_EQ(session.Body(), "");
}

TEST(RotateOffset, BeginsAtAHundredThousandthOfADegree) {
  for (const double sign : {1.0, -1.0}) {
    double x = 1e9;
    double y = 0;
    double z = 0;
    rotateOffset(x, y, z, sign * std::nextafter(1e-05, 0.0), 0, 0, 1);
    EXPECT_EQ(y, 0);
    rotateOffset(x, y, z, sign * 1e-05, 0, 0, 1);
    EXPECT_NEAR(y, sign * 174.533, 0.001);
  }
}

}  // namespace dxf2d
