#include "app/page/page_numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "app/drawing/dxf_reader.h"
#include "app/drawing/group_reader.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d::page {

namespace {

PageNumbers numbersOf(const std::string& blocks, const std::string& entities,
                      const ObjectNames& names = {}) {
  PageStyle style;
  style.title = "plan";
  style.name = "plan.dxf";
  style.names = names;
  return pageNumbers(parseDrawing(drawingText(blocks, entities), "plan.dxf"), style);
}

// The point of a block that a vertex stands for.
PlanPoint pointOf(const PageNumbers& numbers, std::size_t block, std::size_t vertex) {
  const double* const frame = &numbers.frames[5 * block];
  return {frame[0] + numbers.vertices[2 * vertex] * frame[2],
          frame[1] + numbers.vertices[2 * vertex + 1] * frame[2]};
}

TEST(PageNumbers, RoundCoordinatesStayRound) {
  const PageNumbers numbers = numbersOf("", polylineText(1, true, "0,0 3.5,0 3.5,-1.25"));
  ASSERT_EQ(numbers.vertices.size(), 6U);
  EXPECT_EQ(pointOf(numbers, 0, 2).x, 3.5);
  EXPECT_EQ(pointOf(numbers, 0, 2).y, -1.25);
}

TEST(PageNumbers, VerticesAreWithinAStepFarFromTheOrigin) {
  const PageNumbers numbers =
      numbersOf("", polylineText(1, false, "4500000.1,5800000.2 4500123.456789,5800001.3"));
  const PlanPoint point = pointOf(numbers, 0, 1);
  EXPECT_NEAR(point.x, 4500123.456789, 3e-7);
  EXPECT_NEAR(point.y, 5800001.3, 3e-7);
}

TEST(PageNumbers, LinesSayTheirStyleAndWhetherTheyAreClosed) {
  const PageNumbers numbers =
      numbersOf("", lineText(3, 0, 0, 1, 1) + polylineText(3, true, "0,0 1,0 1,1") +
                        polylineText(4, false, "0,0 1,0"));
  EXPECT_EQ(numbers.lineStyles, (std::vector<std::uint32_t>{0, 1, 2}));
  EXPECT_EQ(numbers.lineEnds, (std::vector<std::uint32_t>{2, 5, 7}));
  ASSERT_EQ(numbers.styles.size(), 2U);
  EXPECT_EQ(std::get<1>(numbers.styles[0]), 3);
  EXPECT_EQ(std::get<1>(numbers.styles[1]), 4);
}

TEST(PageNumbers, LinesOfOneStyleStandInARow) {
  const PageNumbers numbers = numbersOf(
      "", lineText(3, 0, 0, 1, 1) + lineText(4, 0, 0, 2, 2) + polylineText(3, true, "0,0 1,0 1,1"));
  EXPECT_EQ(numbers.lineStyles, (std::vector<std::uint32_t>{0, 1, 2}));
  EXPECT_EQ(numbers.lineEnds, (std::vector<std::uint32_t>{2, 5, 7}));
}

TEST(PageNumbers, ABlockIsHeldOnceHoweverOftenItIsInserted) {
  const PageNumbers numbers =
      numbersOf(blockText("A", lineText(1, 0, 0, 1, 0)),
                insertText("A", 0, 0) + insertText("A", 10, 5, 90.0) + lineText(1, -1, 0, 0, 0));
  EXPECT_EQ(numbers.lineEnds.size(), 2U);
  EXPECT_EQ(numbers.insertBlocks, (std::vector<std::uint32_t>{1, 1}));
  EXPECT_EQ(numbers.inserts, (std::vector<double>{0, 0, 0, 10, 5, 90}));
  // Lines, circles, texts and INSERTs of the drawing, then of the block.
  EXPECT_EQ(numbers.blockEnds, (std::vector<std::uint32_t>{1, 0, 0, 2, 2, 0, 0, 2}));
  EXPECT_EQ(numbers.extents.Low().x, -1);
  EXPECT_EQ(numbers.extents.High().x, 10);
  EXPECT_EQ(numbers.extents.High().y, 6);
}

TEST(PageNumbers, KnownInsertsHaveTheirNamesThoughTheDrawingLacksSome) {
  const ObjectNames names{{{"A", "chair"}}, {{"A", "chair 1"}, {"B", "gone"}, {"A", "chair 2"}}};
  const PageNumbers numbers = numbersOf(blockText("A", lineText(1, 0, 0, 1, 0)),
                                        insertText("A", 0, 0) + insertText("A", 9, 0), names);
  ASSERT_EQ(numbers.insertNames.size(), 2U);
  EXPECT_EQ(numbers.names[numbers.insertNames[0]], "chair 1");
  EXPECT_EQ(numbers.names[numbers.insertNames[1]], "chair 2");
  EXPECT_EQ(numbers.names[numbers.blockNames[1]], "chair");
}

TEST(PageNumbers, InsertsOfWhichNothingIsKnownHaveNoNameOfTheirOwn) {
  const PageNumbers numbers =
      numbersOf(blockText("A", lineText(1, 0, 0, 1, 0)), insertText("A", 0, 0));
  EXPECT_EQ(numbers.insertNames, (std::vector<std::uint32_t>{PageNumbers::kNoName}));
  EXPECT_EQ(numbers.names[numbers.blockNames[1]], "A");
}

TEST(PageNumbers, TextsKeepTheirPlaceAndBlankOnesAreLeftOut) {
  const PageNumbers numbers =
      numbersOf("", labelText("Bad\xFC", 2.5, 10, 20, 1, 2, 30.0) + labelText("  ", 2.5, 0, 0, 0));
  ASSERT_EQ(numbers.strings.size(), 1U);
  EXPECT_EQ(numbers.strings[0], "Bad\xC3\xBC");
  EXPECT_EQ(numbers.texts, (std::vector<double>{10, 20, 2.5, 0.8, 30}));
  EXPECT_EQ(numbers.textAnchors, (std::vector<std::uint32_t>{1 | 2 << 2}));
}

TEST(PageNumbers, CoordinatesOutOfRangeAreLeftOutAndCounted) {
  const PageNumbers numbers =
      numbersOf(blockText("A", lineText(1, 0, 0, 1, 0)),
                lineText(1, 0, 0, 1e300, 0) + lineText(1, 0, 0, 2, 0) + insertText("A", 1e200, 0));
  EXPECT_EQ(numbers.leftOut, 2U);
  EXPECT_EQ(numbers.lineEnds.size(), 2U);
  EXPECT_EQ(numbers.extents.High().x, 2);
}

TEST(PageNumbers, APointHasAFrame) {
  const PageNumbers numbers = numbersOf("", lineText(1, 7, 8, 7, 8));
  EXPECT_EQ(numbers.frames, (std::vector<double>{7, 8, 1, 0, 0}));
  EXPECT_EQ(numbers.vertices, (std::vector<std::uint32_t>{0, 0, 0, 0}));
}

TEST(PageNumbers, BytesHoldEveryArray) {
  const PageNumbers numbers = numbersOf("", lineText(1, 0, 0, 1, 1));
  // A frame, two vertices, the line's end and style, the block's name and four ends.
  EXPECT_EQ(numbers.Bytes().size(), 5 * 8 + (4 + 1 + 1 + 1 + 4) * 4U);
}

TEST(PageNumbers, TooMuchToShowIsRefused) {
  std::string blocks = blockText("B0", lineText(1, 0, 0, 1, 1) + lineText(1, 1, 1, 2, 2));
  for (int i = 1; i <= 22; ++i) {
    const std::string inner = "B" + std::to_string(i - 1);
    blocks += blockText("B" + std::to_string(i), insertText(inner, 0, 0) + insertText(inner, 1, 1));
  }
  EXPECT_THROW(numbersOf(blocks, insertText("B22", 0, 0)), LimitError);
}

}  // namespace

}  // namespace dxf2d::page
