// Labels of a plan's objects.
#pragma once

#include <array>
#include <string>

#include "app/model/plan_extent.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// Heights in drawing units between which a drawing, with six decimals, can hold a text.
inline constexpr double kMinLabelHeight = 1e-6;
inline constexpr double kMaxLabelHeight = 1e15;

// The pen of labels unless told otherwise: black on a white sheet.
inline constexpr int kDefaultLabelColor = 7;

struct PlanLabel {
  // As textOfName returns it.
  std::u16string text;
  // The middle of the text.
  std::array<double, 2> center{};
  // Of its letters, kMinLabelHeight to kMaxLabelHeight.
  double height = 0.0;
  // Runs up the sheet.
  bool isUpright = false;
};

// A hundredth of the extent's larger side, within what a drawing can hold: legible in a picture of
// the whole plan.
double labelHeightFor(const PlanExtent& extent);

// A node with the label's text, centered on its own origin, which the node's matrix brings to the
// label's center, upright or not. `name` is its object id and graphic name, to be given to no other
// node; without a real object id it is never drawn as an instance of another. `colorIndex` is from
// 1 to 255.
KtSceneNode makeLabelNode(const PlanLabel& label, int colorIndex, const std::u16string& name);

}  // namespace dxf2d
