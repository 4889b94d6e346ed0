#include "shapes/shape_block.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "dxf/dxf_writer.h"
#include "tests/shapes/shape_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

const std::vector<KtPoint3> kPoints = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};

}  // namespace

TEST(ShapeBlock, ReturnsFalseForAnEmptyOutline) {
  const ShapeSession session;
  EXPECT_FALSE(writeShapeBlock(*exportSession().writer, *session.Node(), {{}, {0, 1, -6}}));
  EXPECT_FALSE(writeShapeBlock(*exportSession().writer, *session.Node(), {kPoints, {}}));
  EXPECT_TRUE(session.IsUntouched());
}

TEST(ShapeBlock, RunsOfOtherCodesAreSkipped) {
  const ShapeSession session;
  EXPECT_TRUE(writeShapeBlock(*exportSession().writer, *session.Node(),
                              {kPoints, {0, 1, 2, -7, 0, 1, -5, 0, 2, -1, 1, 2, -2}}));
  EXPECT_EQ(session.Body(), blockText(1, lineText(254, kOriginText, {"1.000000", "1.000000"})));
  EXPECT_TRUE(session.IsMarked());
}

TEST(ShapeBlock, ChainOfLinesJoinsConsecutivePoints) {
  const ShapeSession session;
  EXPECT_TRUE(writeShapeBlock(*exportSession().writer, *session.Node(), {kPoints, {0, 1, 2, -1}}));
  EXPECT_EQ(session.Body(),
            blockText(1, lineText(254, kOriginText, {"1.000000", "0.000000"}) +
                             lineText(254, {"1.000000", "0.000000"}, {"1.000000", "1.000000"})));
}

TEST(ShapeBlock, BeginningMarksTheNode) {
  const ShapeSession session;
  beginShapeBlock(*exportSession().writer, *session.Node());
  exportSession().writer->Flush();
  EXPECT_EQ(session.Body(), blockHeadText(1));
  EXPECT_TRUE(session.IsMarked());
}

TEST(ShapeBlock, EntryThatNamesNoPointEndsTheWriting) {
  const ShapeSession session;
  EXPECT_THROW(writeShapeBlock(*exportSession().writer, *session.Node(), {kPoints, {0, 1, 3, -6}}),
               std::out_of_range);
  const std::string body = session.Body();
  EXPECT_TRUE(body.ends_with("  0\nVERTEX\n  8\n0\n 70\n0\n" +
                             pointText(10, {"1.000000", "0.000000"}) +
                             "  0\nVERTEX\n  8\n0\n 70\n0\n"));
}

}  // namespace dxf2d
