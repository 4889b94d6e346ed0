#include "app/finish/finishing.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "app/drawing/dxf_reader.h"
#include "app/release/release_writer.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d::finish {
namespace {

FinishedDrawing finishText(const std::string& text, const Options& options = {}) {
  return finishDrawing(parseDrawing(text, "plan.dxf"), {}, options);
}

std::string written(const Drawing& drawing) {
  std::string text;
  release::writeDrawing(drawing, [&](std::string_view bytes) { text += bytes; });
  return text;
}

template <typename Entity>
const Entity& entityAt(const std::vector<DrawingEntity>& entities, std::size_t place) {
  return std::get<Entity>(entities.at(place));
}

// A square in pieces, on itself in part, in two blocks of one name.
std::string squareInPieces() {
  return drawingText(
      blockText("GO_1", polylineText(3, false, "0,0 4,0 4,4") + polylineText(3, false, "1,0 3,0")) +
          blockText("GO_1", polylineText(3, false, "4,4 0,4 0,0")) +
          blockText("GO_0", insertText("GO_1", 0, 0)),
      insertText("GO_1", 10, 20, 90) + insertText("GO_9", 1, 1));
}

TEST(FinishDrawing, PiecesOfABlockAreOneRing) {
  const FinishedDrawing finished = finishText(squareInPieces());
  ASSERT_EQ(finished.drawing.blocks.size(), 1U);
  const auto& entities = finished.drawing.blocks[0].entities;
  ASSERT_EQ(entities.size(), 1U);
  const auto& ring = entityAt<PolylineEntity>(entities, 0);
  EXPECT_TRUE(ring.closed);
  EXPECT_EQ(ring.vertices.size(), 4U);
  EXPECT_EQ(ring.color, 3);
}

TEST(FinishDrawing, WhatIsLeftOutIsCounted) {
  const Summary summary = finishText(squareInPieces()).summary;
  EXPECT_EQ(summary.pruned.unusedBlocks, 1U);
  EXPECT_EQ(summary.pruned.emptyInserts, 1U);
  EXPECT_EQ(summary.piecesBefore, 3U);
  EXPECT_EQ(summary.polylinesAfter, 1U);
  EXPECT_EQ(summary.closedPolylines, 1U);
}

TEST(FinishDrawing, PiecesOfTwoColorsAreNotJoined) {
  const std::string text =
      drawingText("", polylineText(3, false, "0,0 4,0") + polylineText(4, false, "4,0 4,4"));
  EXPECT_EQ(finishText(text).drawing.entities.size(), 2U);
}

TEST(FinishDrawing, FacesBecomeRings) {
  const std::string text =
      drawingText("", entityText("3DFACE", "8=0 10=0 20=0 11=1 21=0 12=1 22=1 13=1 23=1"));
  const FinishedDrawing finished = finishText(text);
  const auto& ring = entityAt<PolylineEntity>(finished.drawing.entities, 0);
  EXPECT_TRUE(ring.closed);
  EXPECT_EQ(ring.vertices.size(), 3U);
}

TEST(FinishDrawing, WithoutJoiningEverythingStays) {
  Options options;
  options.join = false;
  EXPECT_EQ(finishText(squareInPieces(), options).drawing.blocks[0].entities.size(), 3U);
}

TEST(FinishDrawing, ExplodedEverythingStandsInItsPlace) {
  Options options;
  options.explode = true;
  const Drawing drawing = finishText(squareInPieces(), options).drawing;
  EXPECT_TRUE(drawing.blocks.empty());
  ASSERT_EQ(drawing.entities.size(), 1U);
  const auto& ring = entityAt<PolylineEntity>(drawing.entities, 0);
  ASSERT_EQ(ring.vertices.size(), 4U);
  EXPECT_EQ(ring.vertices[1].x, 10.0);
  EXPECT_EQ(ring.vertices[1].y, 24.0);
}

TEST(FinishDrawing, ExplodedTextsTurnWithTheirBlock) {
  Options options;
  options.explode = true;
  const std::string text = drawingText(blockText("GO_1", labelText("A", 1, 2, 0, 1, 2, 30)),
                                       insertText("GO_1", 10, 20, 90));
  const Drawing drawing = finishText(text, options).drawing;
  const auto& label = entityAt<TextEntity>(drawing.entities, 0);
  EXPECT_EQ(label.rotation, 120.0);
  EXPECT_EQ(label.at.x, 10.0);
  EXPECT_EQ(label.at.y, 22.0);
}

TEST(FinishDrawing, ScaleTakesEverythingWithIt) {
  Options options;
  options.scale = 0.001;
  options.units = 6;
  const std::string text =
      drawingText(blockText("GO_1", labelText("A", 2.5, 2, 0, 1)), insertText("GO_1", 1234.5, 20));
  const Drawing drawing = finishText(text, options).drawing;
  EXPECT_EQ(drawing.units, 6);
  EXPECT_EQ(entityAt<InsertEntity>(drawing.entities, 0).at.x, 1.2345);
  EXPECT_EQ(entityAt<TextEntity>(drawing.blocks[0].entities, 0).height, 0.0025);
}

TEST(FinishDrawing, TextsBecomeAscii) {
  Options options;
  options.codePage = 1252;
  const std::string text = drawingText("", labelText("K\xFC"
                                                     "che \\U+00E4 %%d",
                                                     1, 0, 0, 1));
  EXPECT_EQ(entityAt<TextEntity>(finishText(text, options).drawing.entities, 0).bytes,
            "K\\U+00FCche \\U+00E4 \\U+00B0");
}

TEST(FinishDrawing, PolylinesOfOnePointGoAndAreCounted) {
  Options options;
  options.join = false;
  const FinishedDrawing finished =
      finishText(drawingText("", polylineText(3, false, "1,1")), options);
  EXPECT_TRUE(finished.drawing.entities.empty());
  EXPECT_EQ(finished.summary.pruned.shortPolylines, 1U);
}

TEST(FinishDrawing, WhatTheScaleTakesOutOfRangeGoesAndIsCounted) {
  Options options;
  options.scale = 1000.0;
  const FinishedDrawing finished =
      finishText(drawingText("", entityText("LINE", "8=0 10=-1e307 20=0 11=1 21=5") +
                                     entityText("LINE", "8=0 10=0 20=0 11=1 21=5")),
                 options);
  EXPECT_EQ(finished.drawing.entities.size(), 1U);
  EXPECT_EQ(finished.summary.outOfRange, 1U);
}

TEST(FinishDrawing, HugeCoordinatesStay) {
  const std::string text = drawingText("", entityText("LINE", "8=0 10=-1e200 20=0 11=1e200 21=5"));
  EXPECT_EQ(finishText(text).drawing.entities.size(), 1U);
}

TEST(FinishDrawing, FinishingTwiceIsFinishingOnce) {
  const std::string text =
      drawingText(blockText("GO_1", polylineText(3, false, "0.1,0.1 0.2,0.2 0.3,0.3") +
                                        labelText("M\xE4rz", 1, 2, 0, 1, 2, 30)) +
                      blockText("GO_2", insertText("GO_1", 5, 5, 17) + lineText(4, 0, 0, 1, 1) +
                                            lineText(4, 0.5, 0.5, 2, 2)),
                  insertText("GO_2", 1.234567, 20, 33.3) + insertText("GO_1", 0, 0));
  for (const bool explode : {false, true}) {
    for (const Release release : {Release::kR2000, Release::kR2004}) {
      Options options;
      options.release = release;
      options.explode = explode;
      options.units = 4;
      const std::string once = written(finishText(text, options).drawing);
      EXPECT_EQ(written(finishText(once, options).drawing), once);
    }
  }
}

}  // namespace
}  // namespace dxf2d::finish
