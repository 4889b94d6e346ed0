#include "geometry/indexed_outline.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "dxf/dxf_writer.h"
#include "session/export_session.h"
#include "tests/geometry/drawn_entities.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

const std::vector<KtPoint3> kPoints = {{0, 0, 1}, {1, 0, 2}, {1, 1, 3}};

void write(const std::vector<int>& indices) {
  ExportSession& session = exportSession();
  writeIndexedOutline(*session.writer, *session.currentNode, {kPoints, indices});
}

std::vector<Entity> written(const std::vector<int>& indices) {
  const DrawingSession session;
  write(indices);
  exportSession().writer->Flush();
  return entitiesOf(groupsOf(session.Body()));
}

}  // namespace

TEST(IndexedOutline, LineStripIsAClosedPolyline) {
  const std::vector<Entity> entities = written({0, 1, 2, -6});
  EXPECT_EQ(polylinesOf(entities), (std::vector<PlanPlaces>{{{0, 0}, {1, 0}, {1, 1}}}));
  ASSERT_FALSE(entities.empty());
  EXPECT_EQ(entities.front().Value(70), "1");
  EXPECT_EQ(entities.back().type, "SEQEND");
}

TEST(IndexedOutline, SegmentRunIsALineForEachPair) {
  EXPECT_EQ(linesOf(written({0, 1, 2, -1})),
            (std::vector<PlanLine>{{{0, 0}, {1, 0}}, {{1, 0}, {1, 1}}}));
  EXPECT_TRUE(written({0, -1}).empty());
}

TEST(IndexedOutline, RunsOfOtherCodesAreNotWritten) {
  EXPECT_TRUE(written({0, 1, 2, -7, 0, 1, 2, -5, 0, 1, -2}).empty());
}

TEST(IndexedOutline, RunWithoutATerminatorIsNotWritten) {
  EXPECT_EQ(written({0, 1, -1, 1, 2}).size(), 1U);
}

TEST(IndexedOutline, NodesMatrixAndColorAreApplied) {
  const DrawingSession session;
  HostNode host;
  host.node.matrix.SetTranslation(10, 20, 30);
  DXF2dOpenNode(host.Attribute());
  exportSession().currentNode->colorIndex = 6;
  write({0, 1, -1});
  exportSession().writer->Flush();
  const std::vector<Entity> entities = entitiesOf(groupsOf(session.Body()));
  EXPECT_EQ(linesOf(entities), (std::vector<PlanLine>{{{10, 20}, {11, 20}}}));
  ASSERT_EQ(entities.size(), 1U);
  EXPECT_EQ(entities[0].Value(62), "6");
}

TEST(IndexedOutline, EntryThatNamesNoPointThrowsWithAllBeforeItWritten) {
  const DrawingSession session;
  try {
    write({0, 1, 2, 3, -1});
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
  exportSession().writer->Flush();
  EXPECT_TRUE(session.Body().ends_with(
      "  0\nLINE\n  8\n0\n 62\n254\n 10\n1.000000\n 20\n1.000000\n 30\n0.000000\n"));
}

TEST(IndexedOutline, RunThatBeginsWithACodeThrows) {
  const DrawingSession session;
  EXPECT_THROW(write({-1, 1, -6}), std::out_of_range);
}

}  // namespace dxf2d
