#include "shapes/box_writer.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/shapes/shape_session.h"
#include "tests/support/expected_groups.h"
#include "tests/support/node_without_writer.h"

namespace dxf2d {

namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kPi = 3.141592653589793;
constexpr double kThreeHalfPi = 4.71238898038469;
constexpr double kTwoPi = 6.283185307179586;
const std::vector<double> kSize = {2, 4, 6};

// The block that a box of 2 by 4 by 6 gives on a node with this matrix.
std::string boxOn(const KtMatrix& matrix) {
  const ShapeSession session(matrix);
  EXPECT_TRUE(writeBox(kSize));
  EXPECT_TRUE(session.IsMarked());
  return session.Body();
}

// The block that one of the writers gives on an unturned node.
template <class Write>
std::string writtenOnPlainNode(Write write) {
  const ShapeSession session;
  BoxWriter writer;
  writer.SetNode(session.Node());
  EXPECT_TRUE(write(writer));
  return session.Body();
}

std::string rectangle(const PlanPoint& a, const PlanPoint& b, const PlanPoint& c,
                      const PlanPoint& d) {
  return blockText(1, polylineText(254, {a, b, c, d}, true));
}

// The top face on an unturned node.
std::string topFace() {
  return rectangle({"1.000000", "2.000000"}, {"-1.000000", "2.000000"}, {"-1.000000", "-2.000000"},
                   {"1.000000", "-2.000000"});
}

std::string wireframe() {
  const PlanPoint corners[] = {{"1.000000", "2.000000"},
                               {"-1.000000", "2.000000"},
                               {"-1.000000", "-2.000000"},
                               {"1.000000", "-2.000000"}};
  const std::string level =
      polylineText(254, {corners[0], corners[1], corners[2], corners[3]}, true);
  std::string text = level + level;
  for (const PlanPoint& corner : corners) {
    text += lineText(254, corner, corner);
  }
  return blockText(1, text);
}

// How many polylines and lines a block has.
std::pair<std::size_t, std::size_t> countsOf(const std::string& body) {
  const std::vector<Entity> entities = entitiesOf(groupsOf(body));
  return {entitiesOfType(entities, "POLYLINE").size(), entitiesOfType(entities, "LINE").size()};
}

constexpr std::pair<std::size_t, std::size_t> kOneFace = {1, 0};
constexpr std::pair<std::size_t, std::size_t> kWireframe = {2, 4};

}  // namespace

TEST(BoxWriter, QuarterTurnAboutZTurnsTheTopFace) {
  EXPECT_EQ(boxOn(turned(0, 0, 1, kHalfPi)),
            rectangle({"-2.000000", "1.000000"}, {"-2.000000", "-1.000000"},
                      {"2.000000", "-1.000000"}, {"2.000000", "1.000000"}));
}

TEST(BoxWriter, AnyTurnAboutZIsOneFace) {
  EXPECT_EQ(countsOf(boxOn(turned(0, 0, 1, 0.1))), kOneFace);
  EXPECT_EQ(countsOf(boxOn(turned(0, 0, 1, -3))), kOneFace);
}

TEST(BoxWriter, AxesAreComparedExactly) {
  EXPECT_EQ(countsOf(boxOn(turned(1e-13, 1e-13, 1, 0.1))), kWireframe);
}

TEST(BoxWriter, ThirtyDegreesAboutXIsTheWireframe) {
  EXPECT_EQ(countsOf(boxOn(turned(1, 0, 0, 30 * kPi / 180))), kWireframe);
}

TEST(BoxWriter, NearlyAQuarterTurnAboutXIsTheSideFace) {
  const std::string body = boxOn(turned(1, 0, 0, 1.57079));
  EXPECT_EQ(countsOf(body), kOneFace);
  // y = -b/2, z from 0 to c, turned towards the viewer: up the drawing goes down z.
  const std::vector<Entity> vertices = entitiesOfType(entitiesOf(groupsOf(body)), "VERTEX");
  ASSERT_EQ(vertices.size(), 4U);
  EXPECT_NEAR(vertices[0].Number(20), -6, 1e-4);
  EXPECT_NEAR(vertices[1].Number(20), -6, 1e-4);
  EXPECT_NEAR(vertices[2].Number(20), 0, 1e-4);
  EXPECT_NEAR(vertices[3].Number(20), 0, 1e-4);
}

TEST(BoxWriter, FurtherFromAQuarterTurnIsTheWireframe) {
  EXPECT_EQ(countsOf(boxOn(turned(1, 0, 0, 1.5707))), kWireframe);
  EXPECT_EQ(countsOf(boxOn(turned(0, 1, 0, 1.5709))), kWireframe);
}

TEST(BoxWriter, HalfTurnAboutXIsTheTopFace) {
  const std::string body = boxOn(turned(1, 0, 0, kPi));
  EXPECT_EQ(countsOf(body), kOneFace);
  const std::vector<Entity> vertices = entitiesOfType(entitiesOf(groupsOf(body)), "VERTEX");
  EXPECT_EQ(vertices.at(0).Value(10), "1.000000");
  EXPECT_EQ(vertices.at(0).Value(20), "-2.000000");
}

TEST(BoxWriter, QuarterTurnAboutYIsTheOtherSideFace) {
  const std::string body = boxOn(turned(0, 1, 0, kHalfPi));
  EXPECT_EQ(countsOf(body), kOneFace);
  // x = a/2, z from -c/2 to c/2.
  const std::vector<Entity> vertices = entitiesOfType(entitiesOf(groupsOf(body)), "VERTEX");
  ASSERT_EQ(vertices.size(), 4U);
  EXPECT_NEAR(vertices[0].Number(10), 3, 1e-9);
  EXPECT_NEAR(vertices[1].Number(10), -3, 1e-9);
  EXPECT_NEAR(vertices[0].Number(20), -2, 1e-9);
  EXPECT_NEAR(vertices[2].Number(20), 2, 1e-9);
}

TEST(BoxWriter, ObliqueAxisIsTheWireframe) {
  EXPECT_EQ(countsOf(boxOn(turned(1, 1, 0, kHalfPi))), kWireframe);
  EXPECT_EQ(countsOf(boxOn(turned(1, 1, 1, kHalfPi))), kWireframe);
}

TEST(BoxWriter, UnturnedNodeIsTheWireframe) { EXPECT_EQ(boxOn({}), wireframe()); }

TEST(BoxWriter, ReturnsFalseForAWrongNumberOfSizes) {
  for (const std::vector<double>& sizes :
       {std::vector<double>{}, std::vector<double>{1, 2}, std::vector<double>{1, 2, 3, 4}}) {
    const ShapeSession session;
    EXPECT_FALSE(writeBox(sizes));
    EXPECT_TRUE(session.IsUntouched());
  }
}

TEST(BoxWriter, ReturnsFalseForSizesNotAboveZero) {
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (const std::vector<double>& sizes :
       {std::vector<double>{1, 1, 0}, std::vector<double>{0, 1, 1}, std::vector<double>{1, -1, 1},
        std::vector<double>{1, 1, kNaN}}) {
    const ShapeSession session;
    BoxWriter writer;
    EXPECT_FALSE(writer.WriteBox(session.Node(), sizes));
    EXPECT_FALSE(writer.WriteTurnedAboutZ(sizes, 0));
    EXPECT_FALSE(writer.WriteQuarterTurnAboutX(sizes, 0));
    EXPECT_FALSE(writer.WriteQuarterTurnAboutY(sizes, 0));
    EXPECT_FALSE(writer.WriteWireframe(sizes));
    EXPECT_FALSE(writer.WriteTopOnly(sizes, 0));
    EXPECT_TRUE(session.IsUntouched());
  }
}

TEST(BoxWriter, ReturnsFalseWithoutANode) {
  const ShapeSession session;
  BoxWriter writer;
  EXPECT_FALSE(writer.WriteBox(nullptr, kSize));
  EXPECT_FALSE(writer.WriteTurnedAboutZ(kSize, 0));
  EXPECT_FALSE(writer.WriteQuarterTurnAboutX(kSize, 0));
  EXPECT_FALSE(writer.WriteQuarterTurnAboutY(kSize, 0));
  EXPECT_FALSE(writer.WriteWireframe(kSize));
  EXPECT_FALSE(writer.WriteTopOnly(kSize, 0));
  writer.WriteSolid(nullptr, 1, 1, 1);
  EXPECT_TRUE(session.IsUntouched());
}

TEST(BoxWriter, ReturnsFalseWithoutACurrentNode) {
  { DrawingSession session; }
  EXPECT_FALSE(writeBox(kSize));
}

TEST(BoxWriter, TurnedAboutZWritesTheTopFace) {
  EXPECT_EQ(writtenOnPlainNode([](BoxWriter& box) { return box.WriteTurnedAboutZ(kSize, 0.3); }),
            topFace());
}

TEST(BoxWriter, QuarterTurnAboutXChoosesItsFaceByTheAngle) {
  for (const double angle : {0.0, kPi, kTwoPi}) {
    EXPECT_EQ(writtenOnPlainNode(
                  [&](BoxWriter& box) { return box.WriteQuarterTurnAboutX(kSize, angle); }),
              topFace());
  }
  for (const double angle : {kHalfPi, kThreeHalfPi}) {
    EXPECT_EQ(writtenOnPlainNode(
                  [&](BoxWriter& box) { return box.WriteQuarterTurnAboutX(kSize, angle); }),
              rectangle({"1.000000", "-2.000000"}, {"-1.000000", "-2.000000"},
                        {"-1.000000", "-2.000000"}, {"1.000000", "-2.000000"}));
  }
}

TEST(BoxWriter, QuarterTurnAboutYChoosesItsFaceByTheAngle) {
  for (const double angle : {0.0, kPi, kTwoPi}) {
    EXPECT_EQ(writtenOnPlainNode(
                  [&](BoxWriter& box) { return box.WriteQuarterTurnAboutY(kSize, angle); }),
              topFace());
  }
  for (const double angle : {kHalfPi, kThreeHalfPi}) {
    EXPECT_EQ(writtenOnPlainNode(
                  [&](BoxWriter& box) { return box.WriteQuarterTurnAboutY(kSize, angle); }),
              rectangle({"1.000000", "-2.000000"}, {"1.000000", "-2.000000"},
                        {"1.000000", "2.000000"}, {"1.000000", "2.000000"}));
  }
}

TEST(BoxWriter, TopOnlyWritesNothingForATurnedBox) {
  EXPECT_EQ(writtenOnPlainNode([](BoxWriter& box) { return box.WriteTopOnly(kSize, 0.00004); }),
            topFace());
  const ShapeSession session;
  BoxWriter writer;
  writer.SetNode(session.Node());
  EXPECT_FALSE(writer.WriteTopOnly(kSize, 0.1));
  EXPECT_TRUE(session.IsUntouched());
}

TEST(BoxWriter, SolidIsSixFacesInOrder) {
  const ShapeSession session;
  BoxWriter writer;
  writer.WriteSolid(session.Node(), 2, 4, 6);
  EXPECT_TRUE(session.IsMarked());
  const auto face = [](const std::string& corners) {
    std::string text = "  0\n3DFACE\n  8\n0\n 62\n254\n";
    for (std::size_t i = 0; i < 4; ++i) {
      text += pointText(10 + static_cast<int>(i),
                        {corners[2 * i] == '+' ? "1.000000" : "-1.000000",
                         corners[2 * i + 1] == '+' ? "2.000000" : "-2.000000"});
    }
    return text;
  };
  // Signs of x and y of the four corners.
  EXPECT_EQ(session.Body(),
            blockText(1, face("--+-++-+") + face("--+-++-+") + face("-+++++-+") + face("+++-+-++") +
                             face("-+-----+") + face("--+-+---")));
}

TEST(BoxWriter, SolidFacesSpanTheHeight) {
  // Seen along y: what is z of the box is up in the drawing.
  const ShapeSession session(turned(1, 0, 0, -kHalfPi));
  BoxWriter writer;
  writer.WriteSolid(session.Node(), 2, 4, 6);
  const std::vector<Entity> faces = entitiesOfType(entitiesOf(groupsOf(session.Body())), "3DFACE");
  ASSERT_EQ(faces.size(), 6U);
  const double expected[6][4] = {{0, 0, 0, 0}, {6, 6, 6, 6}, {0, 0, 6, 6},
                                 {0, 0, 6, 6}, {0, 0, 6, 6}, {0, 0, 6, 6}};
  for (std::size_t i = 0; i < 6; ++i) {
    for (int corner = 0; corner < 4; ++corner) {
      EXPECT_NEAR(faces[i].Number(20 + corner), expected[i][corner], 1e-9) << i << ' ' << corner;
    }
  }
}

TEST(BoxWriter, SolidDoesNotTestItsSizes) {
  const ShapeSession session;
  BoxWriter writer;
  writer.WriteSolid(session.Node(), 0, -1, 0);
  EXPECT_EQ(entitiesOfType(entitiesOf(groupsOf(session.Body())), "3DFACE").size(), 6U);
}

TEST(BoxWriter, CarriesTheNodesColor) {
  const ShapeSession session(turned(0, 0, 1, kHalfPi));
  session.Node()->colorIndex = 42;
  EXPECT_TRUE(writeBox(kSize));
  EXPECT_NE(session.Body().find("  0\nPOLYLINE\n  8\n0\n 62\n42\n"), std::string::npos);
}

TEST(BoxWriter, BlockIsInTheFileAtOnce) {
  ShapeSession session;
  EXPECT_TRUE(writeBox(kSize));
  const std::string written = session.Body();
  EXPECT_EQ(written, wireframe());
  EXPECT_TRUE(session.Close().starts_with(written + blockText(0, insertText(1))));
}

TEST(AnglesEqual, RoundsToTheGivenPlaces) {
  EXPECT_TRUE(anglesEqual(1.57079, kHalfPi));
  EXPECT_FALSE(anglesEqual(1.5707, kHalfPi));
  EXPECT_TRUE(anglesEqual(1.5707, kHalfPi, 3));
  EXPECT_TRUE(anglesEqual(1234, 1244, -2));
  EXPECT_FALSE(anglesEqual(1234, 1254, -2));
  EXPECT_TRUE(anglesEqual(-0.00004, 0.00004));
}

TEST(AnglesEqual, HalvesRoundUp) {
  EXPECT_FALSE(anglesEqual(0.5, 0.0, 0));
  EXPECT_TRUE(anglesEqual(0.5, 1.0, 0));
  EXPECT_TRUE(anglesEqual(-0.5, 0.0, 0));
}

TEST(AnglesEqual, NanAndValuesOutOfRangeEqualNothing) {
  const double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(anglesEqual(kNaN, kNaN));
  EXPECT_FALSE(anglesEqual(1e300, 1e300));
}

TEST(AnglesEqual, RangeIsThatOf32BitIntegers) {
  EXPECT_TRUE(anglesEqual(-2147483648.0, -2147483648.0, 0));
  EXPECT_FALSE(anglesEqual(-2147483649.0, -2147483649.0, 0));
  EXPECT_TRUE(anglesEqual(2147483647.0, 2147483647.0, 0));
  EXPECT_FALSE(anglesEqual(2147483648.0, 2147483648.0, 0));
}

TEST(AnglesEqual, TakesTheLeastNumberOfPlaces) {
  // The scale is 0, so every angle rounds to 0.
  EXPECT_TRUE(anglesEqual(1.0, 2.0, std::numeric_limits<int>::min()));
}

TEST(BoxWriter, ReturnsFalseWithoutAWriter) {
  const NodeWithoutWriter session;
  BlockNode* node = exportSession().currentNode;
  EXPECT_FALSE(writeBox(kSize));
  BoxWriter writer;
  EXPECT_FALSE(writer.WriteBox(node, kSize));
  EXPECT_FALSE(writer.WriteWireframe(kSize));
  writer.WriteSolid(node, 1, 1, 1);
  EXPECT_TRUE(session.IsUntouched());
}

}  // namespace dxf2d
