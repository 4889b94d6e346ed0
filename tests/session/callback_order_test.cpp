// A host that calls back in no sensible order.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "geometry/callbacks.h"
#include "ktscene/kt_graphic_node.h"
#include "labels/label_callback.h"
#include "platform/cfile_exception.h"
#include "platform/path_text.h"
#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/error_boxes.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

class LabelNode : public KtGraphicNode {
 public:
  LabelNode() : KtGraphicNode(true) {}
  bool GetLabelText(std::u16string& text) const override {
    text = u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"";
    return true;
  }
};

const std::vector<double> kTriangle = {0, 0, 0, 1, 0, 0, 0, 1, 0};

bool drawTriangle() { return faceSetCallback(kTriangle, {0, 1, 2, -7}, false, true); }

bool drawFaces() {
  return DXF2dFaceGeometry(kTriangle, {0, 1, 2, -5}, {}, {}, {}, {}, false, true, false, false,
                           nullptr);
}

bool drawLabel() {
  LabelNode label;
  return labelCallback(&label, false, 1);
}

void receiveRed() {
  const double red[3] = {1, 0, 0};
  DXF2dMaterial(nullptr, red, nullptr, nullptr, nullptr, nullptr);
}

// An ordinary export, byte for byte.
void expectNextExportIsRight() {
  HostNode leaf(u"g", u"A", u"A");
  DrawingSession session;
  EXPECT_FALSE(DXF2DReuseCallback(leaf.Attribute()));
  walkLeaf(leaf);
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(insertText(1)));
}

void expectNoCallbackDoesAnything() {
  HostNode host(u"g", u"A", u"A");
  const KtMatrix matrix;
  DXF2dOpenNode(host.Attribute());
  EXPECT_FALSE(DXF2DReuseCallback(host.Attribute()));
  DXF2dMatrix(matrix.Data());
  receiveRed();
  EXPECT_FALSE(drawTriangle());
  EXPECT_FALSE(drawUnitLine());
  EXPECT_FALSE(drawFaces());
  EXPECT_FALSE(drawLabel());
  EXPECT_FALSE(writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"", 1));
  DXF2dOpenLODNode({}, 0);
  DXF2dCloseLODNode();
  DXF2dBBox(nullptr, nullptr, 0);
  DXF2dCloseNode();
  EXPECT_EQ(exportSession().currentNode, nullptr);
  EXPECT_FALSE(DXF2dCloseFileForModel());
}

}  // namespace

TEST(CallbackOrder, CallsBeforeOpenHaveNoEffect) {
  expectNoCallbackDoesAnything();
  expectNextExportIsRight();
}

TEST(CallbackOrder, CallsAfterCloseHaveNoEffect) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  session.Close();
  const std::string drawing = session.Written();
  expectNoCallbackDoesAnything();
  EXPECT_EQ(session.Written(), drawing);
  expectNextExportIsRight();
}

TEST(CallbackOrder, CloseTwiceAndWithoutOpenIsFalse) {
  EXPECT_FALSE(DXF2dCloseFileForModel());
  { DrawingSession session; }
  EXPECT_FALSE(DXF2dCloseFileForModel());
  EXPECT_FALSE(DXF2dCloseFileForModel());
  expectNextExportIsRight();
}

TEST(CallbackOrder, MoreClosesThanOpensEndTheDrawingsContent) {
  HostNode leaf(u"g", u"A", u"A");
  DrawingSession session;
  walkLeaf(leaf);
  for (int i = 0; i < 5; ++i) {
    DXF2dCloseNode();
  }
  EXPECT_FALSE(drawTriangle());
  EXPECT_FALSE(drawLabel());
  EXPECT_FALSE(drawFaces());
  DXF2dOpenNode(leaf.Attribute());
  receiveRed();
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(insertText(1)));
  expectNextExportIsRight();
}

TEST(CallbackOrder, CloseAfterAFailedOpenLeavesACleanSession) {
  const ErrorBoxes boxes;
  ASSERT_FALSE(DXF2dOpenFileForModel(pathFromBytes(testing::TempDir())));
  EXPECT_THROW(DXF2dCloseFileForModel(), CFileException);
  expectNoCallbackDoesAnything();
  expectNextExportIsRight();
}

TEST(CallbackOrder, WalkAfterAFailedOpenIsReportedWriteByWrite) {
  const ErrorBoxes boxes;
  ASSERT_FALSE(DXF2dOpenFileForModel(pathFromBytes(testing::TempDir())));
  DXF2dOpenNode(nullptr);
  EXPECT_THROW(drawUnitLine(), CFileException);
  EXPECT_THROW(drawLabel(), CFileException);
  DXF2dCloseNode();
  expectNextExportIsRight();
}

TEST(CallbackOrder, AnyOrderLeavesTheNextExportRight) {
  const ErrorBoxes boxes;
  const TempFile file;
  HostNode plain(u"g", u"A", u"A");
  HostNode colored(u"g", u"B", u"B");
  colored.node.color = {1, 0, 0};
  HostNode unnamed(u"", u"C", u"C");
  const std::vector<std::function<void()>> calls = {
      [&] { DXF2dOpenFileForModel(file.WidePath()); },
      [&] { DXF2dOpenFileForModel(pathFromBytes(testing::TempDir())); },
      [] { DXF2dCloseFileForModel(); },
      [&] { DXF2dOpenNode(plain.Attribute()); },
      [&] { DXF2dOpenNode(colored.Attribute()); },
      [&] { DXF2dOpenNode(unnamed.Attribute()); },
      [] { DXF2dOpenNode(nullptr); },
      [] { DXF2dCloseNode(); },
      [] { DXF2dCloseNode(); },
      [&] { DXF2DReuseCallback(plain.Attribute()); },
      [&] { DXF2DReuseCallback(colored.Attribute()); },
      [] { receiveRed(); },
      [] { drawTriangle(); },
      [] { drawUnitLine(); },
      [] { drawFaces(); },
      [] { drawLabel(); },
      [] { DXF2dMatrix(nullptr); },
  };
  // The generator's numbers are the same everywhere; what a distribution makes of them is not.
  std::mt19937 random(20);
  for (int round = 0; round < 40; ++round) {
    for (int step = 0; step < 100; ++step) {
      try {
        calls[random() % calls.size()]();
      } catch (const CFileException& exception) {
        // Of a session whose file could not be opened.
        EXPECT_EQ(exception.m_cause, CFileException::invalidFile);
      }
    }
    expectNextExportIsRight();
  }
}

}  // namespace dxf2d
