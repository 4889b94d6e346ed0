#include "app/drawing/dxf_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "tests/app/drawing/drawing_text.h"

namespace dxf2d {

namespace {

Drawing parse(const std::string& text) { return parseDrawing(text, "plan.dxf"); }

std::string complaintOfEntity(const std::string& entity) {
  return complaintOf(drawingText("", entity));
}

void expectContains(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << text;
}

template <typename Entity>
Entity onlyEntity(const Drawing& drawing) {
  EXPECT_EQ(drawing.entities.size(), 1U);
  return std::get<Entity>(drawing.entities.at(0));
}

TEST(DxfReader, ReadsALine) {
  const auto line = onlyEntity<LineEntity>(parse(drawingText("", lineText(3, 1, 2, -3.5, 4))));
  EXPECT_EQ(line.color, 3);
  EXPECT_EQ(line.start.y, 2.0);
  EXPECT_EQ(line.end.x, -3.5);
}

TEST(DxfReader, ReadsAClosedPolyline) {
  const auto polyline =
      onlyEntity<PolylineEntity>(parse(drawingText("", polylineText(254, true, "0,0 4,0 4,3"))));
  EXPECT_TRUE(polyline.closed);
  EXPECT_EQ(polyline.color, 254);
  ASSERT_EQ(polyline.vertices.size(), 3U);
  EXPECT_EQ(polyline.vertices[2].y, 3.0);
}

TEST(DxfReader, FaceWithoutFourthCornerRepeatsTheThird) {
  const auto face = onlyEntity<FaceEntity>(
      parse(drawingText("", entityText("3DFACE", "10=0 20=0 11=1 21=0 12=1 22=5"))));
  EXPECT_EQ(face.corners[3].y, 5.0);
  EXPECT_EQ(face.color, kColorByLayer);
}

TEST(DxfReader, ReadsACircleWithItsFlattenedExtrusion) {
  const auto circle = onlyEntity<CircleEntity>(parse(drawingText(
      "", entityText("CIRCLE", "8=0 62=5 39=3.0 40=2.5 10=1 20=2 30=0 210=0 220=0 230=0"))));
  EXPECT_EQ(circle.radius, 2.5);
  EXPECT_EQ(circle.center.x, 1.0);
}

TEST(DxfReader, ReadsATextWithItsAlignment) {
  const auto text =
      onlyEntity<TextEntity>(parse(drawingText("", labelText("Ab  c", 2.5, 10, 20, 1, 2, 30))));
  EXPECT_EQ(text.bytes, "Ab  c");
  EXPECT_EQ(text.height, 2.5);
  EXPECT_EQ(text.widthFactor, 0.8);
  EXPECT_EQ(text.rotation, 30.0);
  EXPECT_EQ(text.across, TextAcross::kCenter);
  EXPECT_EQ(text.up, TextUp::kMiddle);
  EXPECT_EQ(text.at.x, 10.0);
}

TEST(DxfReader, TextWithoutPointsStandsAtTheOrigin) {
  const auto text = onlyEntity<TextEntity>(
      parse(drawingText("", entityText("TEXT", "40=1 62=1 41=0.8 1=X 7=STANDARD 8=0"))));
  EXPECT_EQ(text.at.x, 0.0);
  EXPECT_EQ(text.up, TextUp::kBaseline);
}

TEST(DxfReader, PaddingZerosOfATextAreDropped) {
  const auto text = onlyEntity<TextEntity>(
      parse(drawingText("", labelText(std::string_view("ab\0\0", 4), 1, 0, 0, 0))));
  EXPECT_EQ(text.bytes, "ab");
}

TEST(DxfReader, TextOfNoHeightIsTaken) {
  EXPECT_EQ(onlyEntity<TextEntity>(parse(drawingText("", labelText("a", -1, 0, 0, 0)))).height,
            -1.0);
}

TEST(DxfReader, ReadsInsertsOfBlocksThatComeLater) {
  const Drawing drawing = parse(drawingText(
      blockText("GO_0", insertText("GO_1", 0, 0)) + blockText("GO_1", lineText(1, 0, 0, 1, 1)),
      insertText("GO_0", 5, 6, 90)));
  const auto insert = onlyEntity<InsertEntity>(drawing);
  EXPECT_EQ(insert.rotation, 90.0);
  EXPECT_EQ(insert.at.y, 6.0);
  const DrawingBlock& outer = drawing.blocks[insert.block];
  EXPECT_EQ(outer.name, "GO_0");
  const auto& inner = std::get<InsertEntity>(outer.entities.at(0));
  EXPECT_EQ(drawing.blocks[inner.block].entities.size(), 1U);
}

TEST(DxfReader, LabelBlockWithoutLayerIsRead) {
  const Drawing drawing = parse(
      drawingText("  0\nBLOCK\n  2\nGO_1\n 70\n64\n 10\n0.0\n 20\n0.0\n 30\n0.0\n  3\nGO_1\n" +
                      labelText("a", 1, 0, 0, 1) + "  0\nENDBLK\n",
                  insertText("GO_1", 0, 0)));
  EXPECT_EQ(drawing.blocks.at(0).entities.size(), 1U);
}

TEST(DxfReader, BlockThatStandsTwiceHoldsTheEntitiesOfBoth) {
  const Drawing drawing = parse(drawingText(
      blockText("GO_1", lineText(1, 0, 0, 1, 1)) + blockText("GO_1", lineText(2, 0, 0, 1, 1)), ""));
  ASSERT_EQ(drawing.blocks.size(), 1U);
  ASSERT_EQ(drawing.blocks[0].entities.size(), 2U);
  EXPECT_EQ(std::get<LineEntity>(drawing.blocks[0].entities[1]).color, 2);
}

TEST(DxfReader, InsertOfAMissingBlockIsTaken) {
  const Drawing drawing = parse(drawingText("", insertText("GO_7", 0, 0)));
  EXPECT_FALSE(drawing.blocks.at(0).defined);
  EXPECT_TRUE(drawing.blocks.at(0).entities.empty());
}

TEST(DxfReader, TakesCarriageReturns) {
  std::string text;
  for (const char byte : drawingText("", labelText("a", 1, 0, 0, 0))) {
    text += byte == '\n' ? "\r\n" : std::string(1, byte);
  }
  EXPECT_EQ(onlyEntity<TextEntity>(parse(text)).bytes, "a");
}

TEST(DxfReader, PassesOverComments) {
  EXPECT_EQ(parse("999\nhello\n" + drawingText("", "")).entities.size(), 0U);
}

TEST(DxfReader, OtherEntitiesAreCountedAndNamed) {
  const Drawing drawing =
      parse(drawingText("", entityText("ARC", "10=0 20=0 40=1") + entityText("POINT", "10=0") +
                                entityText("ARC", "10=x") + lineText(1, 0, 0, 1, 1)));
  EXPECT_EQ(drawing.skippedCount, 3U);
  EXPECT_EQ(drawing.skippedKinds, (std::vector<std::string>{"'ARC'", "'POINT'"}));
  EXPECT_EQ(drawing.entities.size(), 1U);
}

TEST(DxfReader, NamesFileAndLineOfABadNumber) {
  const std::string text = "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n 10\n1,5\n";
  expectContains(complaintOf(text), "plan.dxf:8: '1,5' in group 10 is not a finite number");
}

TEST(DxfReader, RefusesNumbersThatAreNotFinite) {
  for (const char* number : {"inf", "-inf", "nan", "1e999", "", "0x10", "1.0.0"}) {
    expectContains(complaintOfEntity("  0\nCIRCLE\n 40\n" + std::string(number) + "\n"),
                   "is not a finite number");
  }
}

TEST(DxfReader, RefusesInvalidWholeNumbers) {
  for (const char* number : {"1.5", "99999999999", "red"}) {
    expectContains(complaintOfEntity("  0\nLINE\n 62\n" + std::string(number) + "\n"),
                   "is not a whole number");
  }
}

TEST(DxfReader, RefusesALineWithoutItsEnd) {
  expectContains(complaintOfEntity(entityText("LINE", "10=0 20=0")), "LINE: group 11 is missing");
}

TEST(DxfReader, RefusesACutDrawingWhereverItIsCut) {
  const std::string whole = drawingText(
      blockText("GO_1", polylineText(1, true, "0,0 1,0 1,1") + labelText("abc", 1, 0, 0, 1)),
      insertText("GO_1", 1, 2, 3));
  ASSERT_EQ(complaintOf(whole), "");
  // The last line end may be missing.
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    EXPECT_NE(complaintOf(whole.substr(0, length)), "") << length;
  }
}

TEST(DxfReader, RefusesABlockWithoutItsEnd) {
  expectContains(complaintOf(drawingText("  0\nBLOCK\n  2\nGO_1\n" + lineText(1, 0, 0, 1, 1), "")),
                 "ENDSEC found where an entity is expected");
}

TEST(DxfReader, RefusesAPolylineWithoutSeqend) {
  expectContains(complaintOfEntity(entityText("POLYLINE", "66=1 70=0") +
                                   entityText("VERTEX", "10=0 20=0") + lineText(1, 0, 0, 1, 1)),
                 "POLYLINE: its vertices end without SEQEND");
}

TEST(DxfReader, RefusesAnInsertWithoutItsSeqend) {
  expectContains(complaintOfEntity(entityText("INSERT", "66=1 2=A 10=0 20=0")), "no SEQEND");
}

TEST(DxfReader, RefusesAStrayVertex) {
  expectContains(complaintOfEntity(entityText("VERTEX", "10=0 20=0")),
                 "VERTEX found where an entity is expected");
}

TEST(DxfReader, RefusesShapesThatItWouldDrawWrongly) {
  EXPECT_NE(complaintOfEntity(entityText("INSERT", "2=A 10=0 20=0 41=2")), "");
  EXPECT_NE(complaintOfEntity(entityText("INSERT", "2=A 10=0 20=0 70=3")), "");
  EXPECT_NE(complaintOfEntity(entityText("POLYLINE", "70=16") + entityText("SEQEND", "")), "");
  EXPECT_NE(complaintOfEntity(entityText("POLYLINE", "70=0") +
                              entityText("VERTEX", "10=0 20=0 42=1") + entityText("SEQEND", "")),
            "");
  EXPECT_NE(complaintOfEntity(entityText("TEXT", "40=1 72=5")), "");
  EXPECT_NE(complaintOfEntity(entityText("TEXT", "40=1 73=-1")), "");
  EXPECT_NE(complaintOfEntity(entityText("TEXT", "40=1 41=0")), "");
  EXPECT_NE(complaintOfEntity(entityText("CIRCLE", "10=0 20=0 40=-1")), "");
}

TEST(DxfReader, RefusesAnotherVersion) {
  std::string text = drawingText("", "");
  text.replace(text.find("AC1006"), 6, "AC1021");
  expectContains(complaintOf(text), "plan.dxf:8: the drawing has version 'AC1021'");
}

TEST(DxfReader, RefusesOtherFiles) {
  expectContains(complaintOf(""), "plan.dxf:1: the drawing ends without EOF");
  expectContains(complaintOf("%PDF-1.4\n"), "plan.dxf:1: '%PDF-1.4' is not a group code");
  expectContains(complaintOf(std::string(10'000, '\0')), "is not a group code");
}

TEST(DxfReader, RefusesASectionWithoutItsEnd) {
  expectContains(complaintOf("  0\nSECTION\n  2\nTABLES\n  0\nSECTION\n"), "has no ENDSEC");
}

TEST(DxfReader, UnprintableBytesAreNotRepeatedInMessages) {
  const std::string complaint = complaintOf("\x1b[31m\n0\n");
  EXPECT_EQ(complaint.find('\x1b'), std::string::npos);
  expectContains(complaint, "'?[31m'");
}

TEST(DxfReader, NamesAFileThatCannotBeRead) {
  try {
    readDrawing("no/such/plan.dxf");
    FAIL();
  } catch (const DxfError& error) {
    expectContains(error.what(), "no/such/plan.dxf: cannot be read: No such file or directory");
  }
}

TEST(DxfReader, RefusesADirectory) { EXPECT_THROW(readDrawing("/"), DxfError); }

TEST(DxfReader, AnEndlessDeviceReachesALimit) {
  EXPECT_THROW(readDrawing("/dev/zero"), LimitError);
}

}  // namespace

}  // namespace dxf2d
