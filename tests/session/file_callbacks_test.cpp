#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <string>

#include "dxf/dxf_writer.h"
#include "platform/path_text.h"
#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/error_boxes.h"
#include "tests/support/expected_groups.h"

namespace {

bool outOfMemory = false;

}  // namespace

// Only the writer is allocated in this form.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  if (outOfMemory) {
    return nullptr;
  }
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

namespace dxf2d {

TEST(FileCallbacks, OpenMakesTheRootCurrent) {
  DrawingSession session;
  const ExportSession& state = exportSession();
  ASSERT_NE(state.root, nullptr);
  EXPECT_EQ(state.currentNode, state.root);
  EXPECT_EQ(state.lastNode, state.root);
  EXPECT_EQ(state.root->parent, nullptr);
  EXPECT_EQ(state.root->colorIndex, -1);
  EXPECT_EQ(state.root->blockNumber, 0U);
  EXPECT_EQ(state.blockCounter, 1U);
  EXPECT_EQ(state.depth, 0);
  EXPECT_TRUE(state.root->matrix.IsIdentity());
}

TEST(FileCallbacks, SecondExportCountsFromZeroAgain) {
  HostNode leaf(u"g", u"A", u"A");
  std::string bodies[2];
  for (std::string& body : bodies) {
    DrawingSession session;
    walkLeaf(leaf);
    body = session.Close();
  }
  EXPECT_EQ(bodies[0], blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                           drawingEndText(insertText(1)));
  EXPECT_EQ(bodies[1], bodies[0]);
}

TEST(FileCallbacks, NothingIsReusedFromTheExportBefore) {
  HostNode leaf(u"g", u"A", u"A");
  {
    DrawingSession session;
    walkLeaf(leaf);
  }
  DrawingSession session;
  EXPECT_FALSE(DXF2DReuseCallback(leaf.Attribute()));
}

TEST(FileCallbacks, NodesLeftOpenAreClosedWithTheDrawing) {
  HostNode outer(u"", u"", u"");
  HostNode inner(u"g", u"A", u"A");
  DrawingSession session;
  DXF2dOpenNode(outer.Attribute());
  DXF2dOpenNode(inner.Attribute());
  drawUnitLine();
  EXPECT_EQ(session.Close(), blockText(2, unitLineText()) + blockText(1, insertText(2)) +
                                 blockText(0, insertText(1)) + drawingEndText(insertText(2)));
}

TEST(FileCallbacks, CloseWithoutAnExportIsFalse) {
  EXPECT_FALSE(DXF2dCloseFileForModel());
  {
    DrawingSession session;
    session.Close();
    EXPECT_FALSE(DXF2dCloseFileForModel());
  }
  EXPECT_FALSE(DXF2dCloseFileForModel());
}

TEST(FileCallbacks, CloseLeavesNoCurrentNodeAndNoWriter) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  session.Close();
  EXPECT_EQ(exportSession().currentNode, nullptr);
  EXPECT_EQ(exportSession().writer, nullptr);
}

TEST(FileCallbacks, OpenAndCloseAreFalseWithoutMemoryForAWriter) {
  DxfWriter::Release();
  const TempFile file;
  outOfMemory = true;
  EXPECT_FALSE(DXF2dOpenFileForModel(file.WidePath()));
  outOfMemory = false;
  EXPECT_EQ(exportSession().writer, nullptr);
  EXPECT_FALSE(drawUnitLine());
  EXPECT_FALSE(DXF2dCloseFileForModel());
  EXPECT_FALSE(std::filesystem::exists(file.Path()));
  DrawingSession session;
  EXPECT_EQ(session.Close(), drawingEndText(""));
}

TEST(FileCallbacks, FailedOpenIsFalseAndShowsOneBox) {
  const ErrorBoxes boxes;
  EXPECT_FALSE(DXF2dOpenFileForModel(pathFromBytes(testing::TempDir())));
  EXPECT_EQ(boxes.Shown().size(), 1U);
  EXPECT_NE(exportSession().writer, nullptr);
  EXPECT_THROW(DXF2dCloseFileForModel(), CFileException);
  EXPECT_EQ(exportSession().writer, nullptr);
  EXPECT_FALSE(DXF2dCloseFileForModel());
}

TEST(FileCallbacks, OpenWhileOpenLeavesTheFirstFileAsFarAsItWas) {
  HostNode leaf(u"g", u"A", u"A");
  DrawingSession first;
  walkLeaf(leaf);
  {
    DrawingSession second;
    walkLeaf(leaf);
    EXPECT_EQ(second.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                  drawingEndText(insertText(1)));
  }
  EXPECT_EQ(first.Body(), blockText(1, unitLineText()));
  EXPECT_FALSE(DXF2dCloseFileForModel());
}

TEST(FileCallbacks, OpenOfTheOpenFileBeginsItAnew) {
  const TempFile file;
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  EXPECT_TRUE(DXF2dCloseFileForModel());
  EXPECT_EQ(bodyOf(readFile(file.Path())), drawingEndText(""));
}

}  // namespace dxf2d
