#include "app/release/release_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "app/drawing/dxf_reader.h"
#include "tests/app/release/sample_drawing.h"

namespace dxf2d::release {
namespace {

Drawing readBack(const Drawing& drawing) { return parseDrawing(written(drawing), "sample.dxf"); }

template <typename Entity>
const Entity& entityAt(const Drawing& drawing, std::size_t place) {
  return std::get<Entity>(drawing.entities.at(place));
}

TEST(ReleaseWriter, OurReaderReadsBackEveryEntity) {
  const Drawing back = readBack(sampleDrawing(Release::kR2004));
  EXPECT_EQ(back.skippedCount, 0U);
  EXPECT_EQ(back.release, Release::kR2004);
  EXPECT_EQ(back.units, 4);
  EXPECT_EQ(back.dashLength, 2.0);
  ASSERT_EQ(back.entities.size(), 8U);
  const auto& ring = entityAt<PolylineEntity>(back, 0);
  EXPECT_TRUE(ring.closed);
  EXPECT_EQ(back.layers.at(ring.layer).name, "Walls");
  const auto& open = entityAt<PolylineEntity>(back, 1);
  EXPECT_FALSE(open.closed);
  EXPECT_EQ(open.vertices.at(2).x, 1.0 / 3.0);
  EXPECT_EQ(entityAt<CircleEntity>(back, 3).radius, 7.5);
  EXPECT_EQ(entityAt<TextEntity>(back, 5).up, TextUp::kMiddle);
  EXPECT_EQ(entityAt<TextEntity>(back, 6).bytes, "K\\U+00FCche");
  EXPECT_EQ(entityAt<InsertEntity>(back, 7).rotation, 90.0);
}

TEST(ReleaseWriter, StylesSurviveTheWayThere) {
  const Drawing drawing = sampleDrawing(Release::kR2004);
  const Drawing back = readBack(drawing);
  ASSERT_EQ(back.layers.size(), drawing.layers.size());
  for (std::size_t i = 0; i < back.layers.size(); ++i) {
    EXPECT_EQ(back.layers[i].color, drawing.layers[i].color);
    EXPECT_EQ(back.layers[i].trueColor, drawing.layers[i].trueColor);
    EXPECT_EQ(back.layers[i].lineWeight, drawing.layers[i].lineWeight);
    EXPECT_EQ(back.layers[i].lineType, drawing.layers[i].lineType);
  }
  const EntityProperties& style = entityAt<PolylineEntity>(back, 1);
  const EntityProperties& given = entityAt<PolylineEntity>(drawing, 1);
  EXPECT_TRUE(style == given);
}

TEST(ReleaseWriter, Release2000HasNoTrueColor) {
  const Drawing back = readBack(sampleDrawing(Release::kR2000));
  EXPECT_EQ(back.release, Release::kR2000);
  EXPECT_EQ(back.layers.at(1).trueColor, kNoTrueColor);
  EXPECT_EQ(entityAt<PolylineEntity>(back, 1).trueColor, kNoTrueColor);
}

TEST(ReleaseWriter, ExtentsAreThoseOfThePlacedShapes) {
  const std::string text = written(sampleDrawing(Release::kR2000));
  EXPECT_NE(text.find("$EXTMIN\n 10\n-5.0\n 20\n-2.0\n"), std::string::npos);
  EXPECT_NE(text.find("$EXTMAX\n 10\n120.0\n 20\n60.0\n"), std::string::npos);
}

TEST(ReleaseWriter, ADrawingOfFeetIsImperial) {
  Drawing drawing = sampleDrawing(Release::kR2000);
  drawing.units = 2;
  EXPECT_NE(written(drawing).find("$MEASUREMENT\n 70\n0\n"), std::string::npos);
}

TEST(ReleaseWriter, WhatIsReadBackIsWrittenInTheSameBytes) {
  const std::string text = written(sampleDrawing(Release::kR2004));
  Drawing back = parseDrawing(text, "sample.dxf");
  // The blocks of the two spaces are the writer's own.
  std::erase_if(back.blocks, [](const DrawingBlock& block) { return block.name.front() == '*'; });
  for (DrawingBlock& block : back.blocks) {
    for (DrawingEntity& entity : block.entities) {
      if (auto* insert = std::get_if<InsertEntity>(&entity)) {
        insert->block -= 2;
      }
    }
  }
  std::get<InsertEntity>(back.entities.back()).block -= 2;
  EXPECT_EQ(written(back), text);
}

}  // namespace
}  // namespace dxf2d::release
