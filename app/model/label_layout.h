// Where the labels of a plan stand so that they can be read.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "app/model/line_raster.h"
#include "app/model/plan_extent.h"

namespace dxf2d {

// A label to be placed.
struct LabelRequest {
  // Of the object that it names; not empty.
  PlanExtent extent;
  // Of its text at height 1.
  double width = 0.0;
};

struct LabelPlace {
  bool isPlaced = false;
  // The middle of the text.
  std::array<double, 2> center{};
  double height = 0.0;
  // The text runs up the sheet.
  bool isUpright = false;
};

// The width of a text of height 1, as the plug-in estimates it: 0.8 for each character that readers
// show of `text` (textOfName).
double labelWidth(std::u16string_view text);

// How wide the cells of the raster of lines are, of the labels' height.
inline constexpr double kLineCellShare = 0.125;

// Places labels of height `height`, those of the largest objects first, each where it overlaps none
// that stands already:
//   1. where it crosses no line and no smaller object that is labeled: in the middle of its object,
//      or else elsewhere within the object's extent, at 0.75 of its height if it has to; or right
//      beside the object, within the drawing; or within the extent at 0.5 of its height; or beside
//      it at 0.75 or 0.5;
//   2. within the extent where it crosses the fewest lines: off smaller objects in full height,
//      then at 0.75 of it; else anywhere, at last at 0.5 of it.
// Texts of objects that are too narrow for them and much higher than wide run up the sheet. What
// finds no place is left out. Returns a place for each request, in order. Near-linear in the number
// of labels.
std::vector<LabelPlace> placeLabels(const std::vector<LabelRequest>& requests, double height,
                                    const LineRaster& lines = {});

}  // namespace dxf2d
