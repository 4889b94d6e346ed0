#include "app/drawing/drawing_nesting.h"

#include <gtest/gtest.h>

#include <string>

#include "app/drawing/dxf_reader.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d {

namespace {

Drawing parse(const std::string& blocks, const std::string& entities) {
  return parseDrawing(drawingText(blocks, entities), "plan.dxf");
}

std::string complaintOf(const std::string& blocks, const std::string& entities) {
  return dxf2d::complaintOf(drawingText(blocks, entities));
}

// Blocks 0 to count - 1, each inserting the next `copies` times, and a line in the last.
std::string tower(std::size_t count, int copies) {
  std::string blocks;
  for (std::size_t number = 0; number + 1 < count; ++number) {
    std::string inserts;
    for (int copy = 0; copy < copies; ++copy) {
      inserts += insertText(blockName(number + 1), 0, 0);
    }
    blocks += blockText(blockName(number), inserts);
  }
  return blocks + blockText(blockName(count - 1), lineText(1, 0, 0, 1, 1));
}

std::size_t shownCount(const Drawing& drawing) {
  std::size_t count = 0;
  forEachPlaced(drawing, [&](const DrawingEntity&, const Placement&) { ++count; });
  return count;
}

TEST(DrawingNesting, BlockThatInsertsItselfIsRefused) {
  EXPECT_EQ(complaintOf(blockText("A", insertText("A", 0, 0)), insertText("A", 0, 0)),
            "plan.dxf: block 'A' inserts itself, directly or through others; remove that INSERT");
}

TEST(DrawingNesting, CycleOverSeveralBlocksIsRefused) {
  const std::string blocks = blockText("A", insertText("B", 0, 0)) +
                             blockText("B", insertText("C", 0, 0)) +
                             blockText("C", insertText("A", 0, 0));
  EXPECT_NE(complaintOf(blocks, insertText("B", 0, 0)).find("'B' inserts itself"),
            std::string::npos);
}

TEST(DrawingNesting, CycleThatIsNotInsertedIsIgnored) {
  EXPECT_EQ(complaintOf(blockText("A", insertText("A", 0, 0)), lineText(1, 0, 0, 1, 1)), "");
}

TEST(DrawingNesting, BlockMayBeInsertedTwice) {
  const std::string blocks = blockText("A", insertText("B", 0, 0) + insertText("B", 1, 0)) +
                             blockText("B", lineText(1, 0, 0, 1, 1));
  EXPECT_EQ(shownCount(parse(blocks, insertText("A", 0, 0) + insertText("B", 0, 0))), 3U);
}

TEST(DrawingNesting, DeepNestingIsExpandedWithoutRecursion) {
  EXPECT_EQ(shownCount(parse(tower(kMaxNesting, 1), insertText("GO_0", 0, 0))), 1U);
}

TEST(DrawingNesting, DeeperNestingIsALimit) {
  EXPECT_THROW(parse(tower(kMaxNesting + 1, 1), insertText("GO_0", 0, 0)), LimitError);
}

TEST(DrawingNesting, DoublingTowerIsALimit) {
  EXPECT_THROW(parse(tower(200, 2), insertText("GO_0", 0, 0)), LimitError);
}

TEST(DrawingNesting, DoublingTowerOfEmptyBlocksIsALimit) {
  std::string blocks = tower(200, 2);
  const std::size_t line = blocks.find("  0\nLINE");
  blocks.erase(line, blocks.find("  0\nENDBLK", line) - line);
  EXPECT_THROW(parse(blocks, insertText("GO_0", 0, 0)), LimitError);
}

TEST(DrawingNesting, PlacementsOfNestedInsertsCompose) {
  const std::string blocks =
      blockText("A", insertText("B", 10, 0, 90)) + blockText("B", lineText(1, 1, 0, 2, 0));
  const Drawing drawing = parse(blocks, insertText("A", 100, 200, 90));
  forEachPlaced(drawing, [](const DrawingEntity& entity, const Placement& placement) {
    const PlanPoint start = placement.Apply(std::get<LineEntity>(entity).start);
    // (1, 0) turns to (0, 1), moves to (10, 1), turns to (-1, 10) and moves.
    EXPECT_NEAR(start.x, 99.0, 1e-9);
    EXPECT_NEAR(start.y, 210.0, 1e-9);
  });
  EXPECT_EQ(shownCount(drawing), 1U);
}

TEST(DrawingNesting, InsertPutsTheBasePointOnItsOwn) {
  const std::string block =
      "  0\nBLOCK\n  2\nA\n 10\n3.0\n 20\n0.0\n" + lineText(1, 3, 1, 4, 4) + "  0\nENDBLK\n";
  forEachPlaced(parse(block, insertText("A", 50, 60, 180)),
                [](const DrawingEntity& entity, const Placement& placement) {
                  const PlanPoint start = placement.Apply(std::get<LineEntity>(entity).start);
                  EXPECT_NEAR(start.x, 50.0, 1e-9);
                  EXPECT_NEAR(start.y, 59.0, 1e-9);
                });
}

}  // namespace

}  // namespace dxf2d
