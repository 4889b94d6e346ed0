// What a callback wrote is in the file when it returns.
#include <gtest/gtest.h>

#include <string>

#include "geometry/callbacks.h"
#include "labels/label_callback.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

TEST(WrittenAtOnce, FileGrowsByEachCallbacksBlock) {
  const PlanPoint right = {"1.000000", "0.000000"};
  const PlanPoint up = {"0.000000", "1.000000"};
  const std::vector<double> triangle = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  DrawingSession session;
  std::string expected;
  DXF2dOpenNode(nullptr);
  EXPECT_EQ(session.Body(), expected);

  EXPECT_TRUE(drawUnitLine());
  expected += blockText(1, unitLineText());
  EXPECT_EQ(session.Body(), expected);

  EXPECT_TRUE(faceSetCallback(triangle, {0, 1, 2, -7}, false, true));
  // The edges in order: 0-1, then 1-2 as the first that has 1, then 0-2.
  expected += blockText(1, polylineText(254, {kOriginText, right, up, kOriginText}));
  EXPECT_EQ(session.Body(), expected);

  EXPECT_TRUE(DXF2dFaceGeometry(triangle, {0, 1, 2, -5}, {}, {}, {}, {}, false, true, false, false,
                                nullptr));
  expected += blockText(1, lineText(254, kOriginText, right) + lineText(254, kOriginText, up) +
                               lineText(254, right, up));
  EXPECT_EQ(session.Body(), expected);

  EXPECT_TRUE(writeLabelText(u"T:1 1 0 0 0 0 0 X 0 0 0 0 0 \"a\"", 2));
  expected += blockText(1,
                        "  0\nTEXT\n 40\n1.000000\n 62\n2\n 41\n0.800000\n  1\na\n"
                        "  7\nSTANDARD\n  8\n0\n");
  EXPECT_EQ(session.Body(), expected);

  DXF2dCloseNode();
  EXPECT_EQ(session.Body(), expected);
  EXPECT_EQ(session.Close(), expected + blockText(0, insertText(1)) + drawingEndText(""));
}

TEST(WrittenAtOnce, BlockLargerThanAnyBufferIsThereToo) {
  constexpr int kPoints = 20000;
  std::vector<double> coords;
  std::vector<int> indices;
  for (int i = 0; i < kPoints; ++i) {
    coords.insert(coords.end(), {static_cast<double>(i), static_cast<double>(i % 2), 0.0});
    indices.push_back(i);
  }
  indices.push_back(-6);
  DrawingSession session;
  EXPECT_TRUE(DXF2dLineGeometry(coords, indices));
  const std::string body = session.Body();
  EXPECT_GT(body.size(), 1000000U);
  EXPECT_TRUE(body.ends_with("  0\nSEQEND\n  0\nENDBLK\n  8\n0\n"));
  EXPECT_TRUE(session.Close().starts_with(body + "  0\nENDSEC\n"));
}

TEST(WrittenAtOnce, SessionWithoutNodesIsAnEmptyDrawing) {
  DrawingSession session;
  const std::string head = session.Written();
  EXPECT_EQ(session.Close(), drawingEndText(""));
  EXPECT_EQ(session.Written(), head + drawingEndText(""));
}

}  // namespace dxf2d
