// Sheets that are finished drawings, as a user meets them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <variant>

#include "app/cli/exit_code.h"
#include "app/drawing/dxf_reader.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

// A red wedge of 4 by 2 by 3 and, behind it as seen from the front, a blue triangle. OBJ has y up.
constexpr const char* kModel =
    "v 0 0 0\nv 4 0 0\nv 4 0 -2\nv 0 0 -2\nv 0 3 -2\nv 4 3 -2\n"
    "o wedge\nusemtl red\nf 4 3 2 1\nf 1 2 6 5\nf 3 4 5 6\nf 2 3 6\nf 4 1 5\n"
    "v 1 1 -5\nv 2 1 -5\nv 2 2 -5\no pane\nusemtl blue\nf 7 8 9\n";

class SheetFinishing : public Dxf2d {
 protected:
  // A sheet of two views with `options`.
  Drawing Sheet(const std::string& options) {
    EXPECT_EQ(Run("export " + Write("model.obj", kModel) + " --sheet front,top -f -o " +
                  Path("sheet.dxf") + " " + options),
              kExitDone)
        << error_;
    return readDrawing(Path("sheet.dxf"));
  }
  static std::set<std::string> Layers(const Drawing& drawing) {
    std::set<std::string> names;
    for (const Layer& layer : drawing.layers) {
      names.insert(layer.name);
    }
    return names;
  }
  // The names of the layers on which polylines of `drawing` are.
  static std::multiset<std::string> LayersOfPolylines(const Drawing& drawing) {
    std::multiset<std::string> names;
    for (const DrawingBlock& block : drawing.blocks) {
      for (const DrawingEntity& entity : block.entities) {
        if (const auto* const polyline = std::get_if<PolylineEntity>(&entity)) {
          names.insert(drawing.layers[polyline->layer].name);
        }
      }
    }
    return names;
  }
};

using Names = std::set<std::string>;

TEST_F(SheetFinishing, AnObjectHasOneLayerInAllViews) {
  const Drawing drawing = Sheet("--layers object");
  // The names of the views are on layers of their own.
  EXPECT_EQ(Layers(drawing), (Names{"0", "wedge", "pane", "front", "top"}));
  const std::multiset<std::string> used = LayersOfPolylines(drawing);
  EXPECT_GE(used.count("wedge"), 2U);
  EXPECT_GE(used.count("pane"), 2U);
  EXPECT_EQ(used.count("0"), 0U);
}

TEST_F(SheetFinishing, MaterialsAreLayersInAllViews) {
  const Drawing drawing = Sheet("--layers material");
  EXPECT_EQ(Layers(drawing), (Names{"0", "red", "blue"}));
  const std::multiset<std::string> used = LayersOfPolylines(drawing);
  EXPECT_GE(used.count("red"), 2U);
  EXPECT_GE(used.count("blue"), 2U);
}

TEST_F(SheetFinishing, LinesHiddenInOneViewAreOnTheirLayer) {
  const Drawing drawing = Sheet("--layers kind --hidden dash");
  EXPECT_TRUE(Layers(drawing).contains("hidden"));
  // From the front the pane is behind the wedge, from above it is seen.
  EXPECT_GE(LayersOfPolylines(drawing).count("hidden"), 1U);
  EXPECT_EQ(LayersOfPolylines(Sheet("--layers kind --hidden remove")).count("hidden"), 0U);
}

TEST_F(SheetFinishing, LabelsOfViewsAreOnTheLayerOfLabels) {
  const Drawing drawing = Sheet("--layers kind --explode");
  std::size_t labels = 0;
  for (const DrawingEntity& entity : drawing.entities) {
    if (const auto* const text = std::get_if<TextEntity>(&entity)) {
      ++labels;
      EXPECT_EQ(drawing.layers[text->layer].name, "label");
    }
  }
  EXPECT_EQ(labels, 2U);
}

}  // namespace

}  // namespace dxf2d
