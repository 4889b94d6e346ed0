#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "ktscene/kt_matrix.h"
#include "session/record/block_node.h"
#include "tests/dxf/written_by.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

BlockNode nodeWith(const KtMatrix& matrix, std::uint32_t number = 1) {
  BlockNode node;
  node.matrix = matrix;
  node.blockNumber = number;
  return node;
}

BlockNode translatedNode() {
  KtMatrix matrix;
  matrix.SetTranslation(10, 20, 30);
  return nodeWith(matrix);
}

std::string placementOf(const KtMatrix& matrix) {
  return writtenBy([&](DxfWriter& writer) { writer.WriteInsertPlacement(matrix); });
}

KtMatrix turned(double x, double y, double z, double angle) {
  KtMatrix matrix;
  matrix.SetTranslation(5, 6, 7);
  matrix.Rotate(x, y, z, angle);
  return matrix;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST(Primitives, LayerIsZero) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteLayer(); }), "  8\n0\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteLineLayer(); }), "  8\n0\n");
}

TEST(Primitives, NamesAreWrittenAsGiven) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteBlockName(u"GO_7\n"); }), "  2\nGO_7\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteName3(u"GO_7\n"); }), "  3\nGO_7\n");
}

TEST(Primitives, BlockBeginsAndEndsWithALayer) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteBlockBegin(); }), "  0\nBLOCK\n  8\n0\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteBlockFlags(); }), " 70\n64\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteBlockEnd(); }), "  0\nENDBLK\n  8\n0\n");
}

TEST(Primitives, BlockHeaderHasFivePiecesInOrder) {
  const BlockNode node = nodeWith({}, 12);
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteBlockHeader(node); }),
            "  0\nBLOCK\n  8\n0\n  2\nGO_12\n 70\n64\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n  3\nGO_12\n");
}

TEST(Primitives, InsertPadsItsFlagAndEndsAtOnce) {
  const BlockNode node = nodeWith({}, 3);
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteInsert(&node); }),
            "  0\nINSERT\n  8\n0\n 66\n    1\n  2\nGO_3\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n  0\nSEQEND\n");
}

TEST(Primitives, BasePointKeepsItsThirdCoordinate) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteBasePoint(1, -2, 3.5); }),
            " 10\n1.000000\n 20\n-2.000000\n 30\n3.500000\n");
}

TEST(Primitives, PointWithoutNodeDropsZ) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WritePoint10(nullptr, 1.5, -2, 7); }),
            pointText(10, {"1.500000", "-2.000000"}));
}

TEST(Primitives, PointIsTransformedByItsNode) {
  const BlockNode node = translatedNode();
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint10(&node, 1, 1, 1); }),
            pointText(10, {"11.000000", "21.000000"}));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint11(&node, 1, 1, 1); }),
            pointText(11, {"11.000000", "21.000000"}));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint12(&node, 1, 1, 1); }),
            pointText(12, {"11.000000", "21.000000"}));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint13(&node, 1, 1, 1); }),
            pointText(13, {"11.000000", "21.000000"}));
}

TEST(Primitives, ThirdCoordinateStillTakesPartInTheTransformation) {
  // A quarter turn about y brings z to x.
  const BlockNode node = nodeWith(turned(0, 1, 0, std::numbers::pi / 2));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint10(&node, 0, 0, 2); }),
            pointText(10, {"7.000000", "6.000000"}));
}

TEST(Primitives, TransformedZeroHasNoSign) {
  const BlockNode node = nodeWith({});
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WritePoint10(nullptr, -0.0, -0.0, -0.0); }),
            pointText(10, kOriginText));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint10(&node, -0.0, -0.0, -0.0); }),
            pointText(10, kOriginText));
}

TEST(Primitives, OnePointIsThirdAndFourthCorner) {
  const BlockNode node = translatedNode();
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePoint12And13(&node, 1, 2, 3); }),
            pointText(12, {"11.000000", "22.000000"}) + pointText(13, {"11.000000", "22.000000"}));
}

TEST(Primitives, UntransformedPointIgnoresItsNode) {
  const BlockNode node = translatedNode();
  EXPECT_EQ(
      writtenBy([&](DxfWriter& writer) { writer.WritePoint10Untransformed(&node, 1.5, -0.0, 9); }),
      pointText(10, {"1.500000", "-0.000000"}));
}

TEST(Primitives, TextPointsAreTransformedOnlyWithANode) {
  const BlockNode node = translatedNode();
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteTextPoint10(&node, 1, 2, 3); }),
            pointText(10, {"11.000000", "22.000000"}));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteTextPoint11(&node, 1, 2, 3); }),
            pointText(11, {"11.000000", "22.000000"}));
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteTextPoint10(nullptr, 1, -0.0, 3); }),
            pointText(10, {"1.000000", "-0.000000"}));
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteTextPoint11(nullptr, 1, 2, 3); }),
            pointText(11, {"1.000000", "2.000000"}));
}

TEST(Primitives, ExtrusionIsNotTranslated) {
  const BlockNode node = translatedNode();
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteExtrusion(&node, 1, 2, 3); }),
            " 210\n1.000000\n 220\n2.000000\n 230\n0.000000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteExtrusion(nullptr, 1, 2, 3); }),
            " 210\n1.000000\n 220\n2.000000\n 230\n0.000000\n");
}

TEST(Primitives, ExtrusionIsTurned) {
  const BlockNode node = nodeWith(turned(0, 1, 0, std::numbers::pi / 2));
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteExtrusion(&node, 0, 0, 1); }),
            " 210\n1.000000\n 220\n0.000000\n 230\n0.000000\n");
}

TEST(Primitives, RealsHaveTheirCodes) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteReal39(1.25); }), " 39\n1.250000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteReal40(1.25); }), " 40\n1.250000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteReal50(-90); }), " 50\n-90.000000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteTextRotation(30); }), " 50\n30.000000\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteTextWidthFactor(0.8); }),
            " 41\n0.800000\n");
}

TEST(Primitives, EntitiesOpenWithTheirType) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteLineBegin(); }), "  0\nLINE\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.Write3DFaceBegin(); }), "  0\n3DFACE\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteSolidBegin(); }), "  0\nSOLID\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteCircleBegin(); }), "  0\nCIRCLE\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteSeqEnd(); }), "  0\nSEQEND\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteVerticesFollow(); }), " 66\n1\n");
}

TEST(Primitives, PolylineWithoutColorHasNoGroup62) {
  const std::string text =
      writtenBy([](DxfWriter& writer) { writer.WritePolylineBegin(nullptr, true); });
  EXPECT_EQ(text,
            "  0\nPOLYLINE\n  8\n0\n 66\n1\n 10\n0.000000\n 20\n0.000000\n 30\n0.000000\n"
            " 70\n1\n");
}

TEST(Primitives, PolylineWithColorIsOpenOrClosed) {
  const int color = -1;
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WritePolylineBegin(&color, false); }),
            "  0\nPOLYLINE\n  8\n0\n 62\n254\n 66\n1\n 10\n0.000000\n 20\n0.000000\n"
            " 30\n0.000000\n 70\n0\n");
}

TEST(Primitives, VertexHasLayerAndFlags) {
  const BlockNode node = translatedNode();
  const std::string expected = "  0\nVERTEX\n  8\n0\n 70\n0\n";
  EXPECT_EQ(writtenBy([&](DxfWriter& writer) { writer.WriteVertexBegin(&node); }), expected);
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteVertexBegin(nullptr); }), expected);
}

TEST(Primitives, RecordColorIsReplacedOnlyWhereThereWasNoMaterial) {
  const auto colorOf = [](int color) {
    return writtenBy([&](DxfWriter& writer) { writer.WriteColor(color); });
  };
  EXPECT_EQ(colorOf(-1), " 62\n254\n");
  EXPECT_EQ(colorOf(300), " 62\n300\n");
  EXPECT_EQ(colorOf(0), " 62\n0\n");
  EXPECT_EQ(colorOf(-2), " 62\n-2\n");
}

TEST(Primitives, IndexOutsideThePaletteIsWhite) {
  const auto colorOf = [](int color) {
    return writtenBy([&](DxfWriter& writer) { writer.WriteColorIndex(color); });
  };
  EXPECT_EQ(colorOf(0), " 62\n7\n");
  EXPECT_EQ(colorOf(256), " 62\n7\n");
  EXPECT_EQ(colorOf(-1), " 62\n7\n");
  EXPECT_EQ(colorOf(1), " 62\n1\n");
  EXPECT_EQ(colorOf(255), " 62\n255\n");
}

TEST(Primitives, RgbIsTheNearestIndexOrElseWhite) {
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteColorRgb(0, 0, 0); }), " 62\n178\n");
  EXPECT_EQ(writtenBy([](DxfWriter& writer) { writer.WriteColorRgb(1e9, 0, 0); }), " 62\n7\n");
}

TEST(InsertPlacement, IdentityIsTheOriginWithoutRotation) {
  EXPECT_EQ(placementOf({}), pointText(10, kOriginText));
}

TEST(InsertPlacement, QuarterTurnIsNinetyDegrees) {
  EXPECT_EQ(placementOf(turned(0, 0, 1, std::numbers::pi / 2)),
            pointText(10, {"5.000000", "6.000000"}) + " 50\n90.000000\n");
}

TEST(InsertPlacement, TiltIsLeftAtTheOrigin) {
  EXPECT_EQ(placementOf(turned(1, 0, 0, 0.5)), pointText(10, kOriginText));
  EXPECT_EQ(placementOf(turned(0, 1, 0, 0.5)), pointText(10, kOriginText));
  EXPECT_EQ(placementOf(turned(1, 0, 0, -0.0100000001)), pointText(10, kOriginText));
}

TEST(InsertPlacement, SlightTiltIsPlaced) {
  EXPECT_EQ(placementOf(turned(1, 0, 0, 0.0099999999)), pointText(10, {"5.000000", "6.000000"}));
}

TEST(InsertPlacement, TiltsAboutBothAxesAddUp) {
  KtMatrix matrix = turned(1, 0, 0, 0.006);
  matrix.Rotate(0, 1, 0, -0.006);
  EXPECT_EQ(placementOf(matrix), pointText(10, kOriginText));
}

TEST(InsertPlacement, NegligibleTurnIsNotWritten) {
  EXPECT_EQ(placementOf(turned(0, 0, 1, 0.0005)), pointText(10, {"5.000000", "6.000000"}));
  EXPECT_EQ(placementOf(turned(0, 0, 1, -0.0009)), pointText(10, {"5.000000", "6.000000"}));
}

TEST(InsertPlacement, RotationIsWrittenFromJustAboveAThousandthOfARadian) {
  for (const double sign : {1.0, -1.0}) {
    EXPECT_EQ(placementOf(turned(0, 0, 1, sign * 0.0009999999)).find(" 50\n"), std::string::npos);
    EXPECT_NE(placementOf(turned(0, 0, 1, sign * 0.0010000001)).find(" 50\n"), std::string::npos);
  }
}

TEST(InsertPlacement, HalfARadianIsWrittenInDegrees) {
  EXPECT_EQ(placementOf(turned(0, 0, 1, 0.5)),
            pointText(10, {"5.000000", "6.000000"}) + " 50\n28.647890\n");
  EXPECT_EQ(placementOf(turned(0, 0, 1, -0.5)),
            pointText(10, {"5.000000", "6.000000"}) + " 50\n-28.647890\n");
}

TEST(InsertPlacement, MirroredMatrixCountsAsTilted) {
  const double mirrored[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 5, 6, 7, 1};
  KtMatrix matrix;
  matrix.Init(mirrored);
  EXPECT_EQ(placementOf(matrix), pointText(10, {"5.000000", "6.000000"}));
  const double inPlane[16] = {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
  matrix.Init(inPlane);
  EXPECT_EQ(placementOf(matrix), pointText(10, kOriginText));
}

TEST(InsertPlacement, CoordinateThatIsNotFiniteIsZero) {
  KtMatrix matrix;
  matrix.SetTranslation(kInfinity, std::nan(""), 0);
  EXPECT_EQ(placementOf(matrix), pointText(10, kOriginText));
  matrix.SetTranslation(-kInfinity, 2, kInfinity);
  EXPECT_EQ(placementOf(matrix), pointText(10, {"0.000000", "2.000000"}));
}

}  // namespace dxf2d
