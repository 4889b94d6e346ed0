#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <vector>

#include "geometry/callbacks.h"
#include "ktscene/kt_geometry.h"
#include "ktscene/kt_traverser.h"
#include "labels/label_callback.h"
#include "plugin/entry.h"
#include "session/callbacks.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

// A shape whose parameter query fills in `parameters`, or fails without them.
class Shape : public KtGeometry {
 public:
  explicit Shape(std::optional<std::vector<double>> parameters)
      : KtGeometry(KTV_GRAPHIC_TYPE_BOX), parameters_(std::move(parameters)) {}

  bool GetParameters(std::vector<double>& parameters) const override {
    asked = true;
    if (!parameters_) {
      return false;
    }
    parameters = *parameters_;
    return true;
  }

  mutable bool asked = false;

 private:
  std::optional<std::vector<double>> parameters_;
};

void expectDeclined(std::optional<std::vector<double>> parameters) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  Shape shape(std::move(parameters));
  EXPECT_FALSE(DXF2dSpecialGeometry(&shape, false));
  EXPECT_FALSE(DXF2dSpecialGeometry(&shape, true));
  EXPECT_TRUE(shape.asked);
  EXPECT_EQ(session.Body(), "");
}

}  // namespace

TEST(InitializeTraverser, RegistersTheCallbacksInSlotOrder) {
  KtTraverser traverser;
  EXPECT_TRUE(InitializeTraverser(&traverser, nullptr));
  const KtCallbacks& slots = traverser.Callbacks();
  EXPECT_EQ(slots.openNode, &DXF2dOpenNode);
  EXPECT_EQ(slots.closeNode, &DXF2dCloseNode);
  EXPECT_EQ(slots.reuse, &DXF2DReuseCallback);
  EXPECT_EQ(slots.openLod, &DXF2dOpenLODNode);
  EXPECT_EQ(slots.closeLod, &DXF2dCloseLODNode);
  EXPECT_EQ(slots.boundingBox, &DXF2dBBox);
  EXPECT_EQ(slots.material, &DXF2dMaterial);
  EXPECT_EQ(slots.faceSet, &faceSetCallback);
  EXPECT_EQ(slots.lineSet, &DXF2dLineGeometry);
  EXPECT_EQ(slots.specialGeometry, &DXF2dSpecialGeometry);
  EXPECT_EQ(slots.label, &labelCallback);
  EXPECT_EQ(slots.openFile, &DXF2dOpenFileForModel);
  EXPECT_EQ(slots.closeFile, &DXF2dCloseFileForModel);
}

TEST(InitializeTraverser, LeavesSevenSlotsNull) {
  KtTraverser traverser;
  InitializeTraverser(&traverser, nullptr);
  const KtCallbacks& slots = traverser.Callbacks();
  EXPECT_EQ(slots.matrix, nullptr);
  EXPECT_EQ(slots.faceGeometry, nullptr);
  EXPECT_EQ(slots.pointSet, nullptr);
  EXPECT_EQ(slots.graphicNode, nullptr);
  EXPECT_EQ(slots.text, nullptr);
  EXPECT_EQ(slots.beginFile, nullptr);
  EXPECT_EQ(slots.endFile, nullptr);
}

TEST(InitializeTraverser, IsTrueWhateverItIsGiven) {
  int anything = 0;
  KtTraverser traverser;
  EXPECT_TRUE(InitializeTraverser(&traverser, &anything));
  EXPECT_TRUE(InitializeTraverser(&traverser, &anything));
  EXPECT_TRUE(InitializeTraverser(nullptr, nullptr));
}

TEST(SpecialGeometry, NullIsDeclined) {
  DrawingSession session;
  EXPECT_FALSE(DXF2dSpecialGeometry(nullptr, true));
  EXPECT_EQ(session.Body(), "");
}

TEST(SpecialGeometry, ShapeWhoseQueryFailsIsDeclined) { expectDeclined(std::nullopt); }

TEST(SpecialGeometry, ShapeWithoutParametersIsDeclined) { expectDeclined(std::vector<double>{}); }

TEST(SpecialGeometry, ShapeWithOneParameterIsDeclined) { expectDeclined(std::vector<double>{1}); }

TEST(SpecialGeometry, ShapeWithParametersIsDeclined) {
  expectDeclined(std::vector<double>{1, 2});
  expectDeclined(std::vector<double>{1, 2, 3});
}

TEST(SpecialGeometry, SecondParameterMayBeAnything) {
  expectDeclined(std::vector<double>{1, 1e300});
  expectDeclined(std::vector<double>{1, std::numeric_limits<double>::quiet_NaN()});
  expectDeclined(std::vector<double>{1, -std::numeric_limits<double>::infinity()});
}

}  // namespace dxf2d
