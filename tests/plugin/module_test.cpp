// The built module as a host uses it: loaded at run time and entered through its one C name.
#include <gtest/gtest.h>

#include <string>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "platform/cfile_exception.h"
#include "tests/support/drawing_session.h"
#include "tests/support/error_boxes.h"
#include "tests/support/expected_groups.h"
#include "tests/support/loaded_module.h"
#include "tests/support/system_files.h"

namespace {

class Module {
 public:
  template <class Function>
  Function* Find(const char* name) const {
    return library_.Find<Function>(name);
  }

  // The callbacks as the module registers them.
  KtTraverser Traverser() const {
    KtTraverser traverser;
    EXPECT_TRUE(Find<bool(KtTraverser*, void*)>("InitializeTraverser")(&traverser, nullptr));
    return traverser;
  }

 private:
  LoadedModule library_{DXF2D_MODULE};
};

constexpr char kMatrixSymbol[] = "_Z11DXF2dMatrixPKd";
constexpr char kFaceGeometrySymbol[] =
    "_Z17DXF2dFaceGeometryRKSt6vectorIdSaIdEERKS_IiSaIiEES3_S7_S3_S7_bbbbPK7Texture";

using FaceGeometry = bool(const std::vector<double>&, const std::vector<int>&,
                          const std::vector<double>&, const std::vector<int>&,
                          const std::vector<double>&, const std::vector<int>&, bool, bool, bool,
                          bool, const Texture*);

KtScene lineScene() {
  return ParseScene(R"({"nodes": [{"graphicName": "g", "objectId": "A", "realObjectId": "A",
    "geometry": [{"lineSet": {"coords": [0, 0, 0, 1, 0, 0], "indices": [0, 1, -1]}}]}]})",
                    "line");
}

std::string lineDrawing() {
  return blockText(1, unitLineText()) + blockText(0, insertText(1)) + drawingEndText(insertText(1));
}

}  // namespace

TEST(Module, FillsThirteenSlotsAndLeavesSevenNull) {
  const Module module;
  const KtTraverser traverser = module.Traverser();
  const KtCallbacks& slots = traverser.Callbacks();
  EXPECT_NE(slots.openNode, nullptr);
  EXPECT_NE(slots.closeNode, nullptr);
  EXPECT_NE(slots.reuse, nullptr);
  EXPECT_NE(slots.openLod, nullptr);
  EXPECT_NE(slots.closeLod, nullptr);
  EXPECT_NE(slots.boundingBox, nullptr);
  EXPECT_NE(slots.material, nullptr);
  EXPECT_EQ(slots.matrix, nullptr);
  EXPECT_EQ(slots.faceGeometry, nullptr);
  EXPECT_NE(slots.faceSet, nullptr);
  EXPECT_NE(slots.lineSet, nullptr);
  EXPECT_EQ(slots.pointSet, nullptr);
  EXPECT_EQ(slots.graphicNode, nullptr);
  EXPECT_NE(slots.specialGeometry, nullptr);
  EXPECT_EQ(slots.text, nullptr);
  EXPECT_NE(slots.label, nullptr);
  EXPECT_EQ(slots.beginFile, nullptr);
  EXPECT_EQ(slots.endFile, nullptr);
  EXPECT_NE(slots.openFile, nullptr);
  EXPECT_NE(slots.closeFile, nullptr);
}

TEST(Module, ExportsASceneByTheHostsWalk) {
  const Module module;
  const KtTraverser traverser = module.Traverser();
  KtScene scene = lineScene();
  for (int i = 0; i < 2; ++i) {
    const TempFile file;
    EXPECT_TRUE(traverser.Walk(scene, file.WidePath()));
    EXPECT_EQ(bodyOf(readFile(file.Path())), lineDrawing());
  }
}

TEST(Module, KeepsItsOwnSession) {
  const Module module;
  const KtTraverser traverser = module.Traverser();
  DrawingSession outside;
  EXPECT_FALSE(traverser.Callbacks().closeFile());
  EXPECT_EQ(outside.Close(), drawingEndText(""));
}

TEST(Module, OpenThatFailsEndsTheWalkWithABox) {
  const ErrorBoxes boxes;
  const Module module;
  KtScene scene = lineScene();
  EXPECT_FALSE(module.Traverser().Walk(scene, TempFile("").WidePath() + u"/missing/drawing.dxf"));
  EXPECT_EQ(boxes.Shown().size(), 1U);
  const TempFile file;
  EXPECT_TRUE(module.Traverser().Walk(scene, file.WidePath()));
  EXPECT_EQ(bodyOf(readFile(file.Path())), lineDrawing());
}

TEST(Module, FailedWriteReachesTheHostAsItIs) {
  const Module module;
  KtScene scene = lineScene();
  EXPECT_THROW(module.Traverser().Walk(scene, kFullDisk), CFileException);
  const TempFile file;
  EXPECT_TRUE(module.Traverser().Walk(scene, file.WidePath()));
  EXPECT_EQ(bodyOf(readFile(file.Path())), lineDrawing());
}

TEST(Module, FaceGeometryAndMatrixAreReachedByTheirNames) {
  const Module module;
  const KtTraverser traverser = module.Traverser();
  const KtCallbacks& slots = traverser.Callbacks();
  KtMatrix step;
  step.SetTranslation(10, 20, 0);
  const TempFile file;
  ASSERT_TRUE(slots.openFile(file.WidePath()));
  slots.openNode(nullptr);
  module.Find<void(const double*)>(kMatrixSymbol)(step.Data());
  EXPECT_TRUE(module.Find<FaceGeometry>(kFaceGeometrySymbol)({0, 0, 0, 1, 0, 0, 0, 1, 0},
                                                             {0, 1, 2, -5}, {}, {}, {}, {}, false,
                                                             true, false, false, nullptr));
  slots.closeNode();
  EXPECT_TRUE(slots.closeFile());
  const PlanPoint a = {"10.000000", "20.000000"};
  const PlanPoint b = {"11.000000", "20.000000"};
  const PlanPoint c = {"10.000000", "21.000000"};
  EXPECT_EQ(bodyOf(readFile(file.Path())),
            blockText(1, lineText(254, a, b) + lineText(254, a, c) + lineText(254, b, c)) +
                blockText(0, insertText(1)) + drawingEndText(""));
}

TEST(Module, UnloadingEndsAnExportThatTheHostNeverClosed) {
  const TempFile file;
  {
    const Module module;
    const KtTraverser traverser = module.Traverser();
    ASSERT_TRUE(traverser.Callbacks().openFile(file.WidePath()));
    traverser.Callbacks().openNode(nullptr);
    EXPECT_TRUE(traverser.Callbacks().lineSet({0, 0, 0, 1, 0, 0}, {0, 1, -1}));
  }
  EXPECT_EQ(bodyOf(readFile(file.Path())), blockText(1, unitLineText()));
  // The file is free again.
  const Module again;
  KtScene scene = lineScene();
  EXPECT_TRUE(again.Traverser().Walk(scene, file.WidePath()));
  EXPECT_EQ(bodyOf(readFile(file.Path())), lineDrawing());
}
