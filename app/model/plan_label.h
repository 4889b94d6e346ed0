// Labels of a plan's objects.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "app/model/plan_extent.h"
#include "ktscene/kt_scene.h"

// Heights in drawing units between which a drawing, with six decimals, can hold a text.
inline constexpr double kMinLabelHeight = 1e-6;
inline constexpr double kMaxLabelHeight = 1e15;

struct PlanLabel {
  // As textOfName returns it.
  std::u16string text;
  // The middle of the object's extent.
  std::array<double, 2> centre{};
  // Of the object's first part; none: the colour of outlines without one.
  std::optional<std::array<double, 3>> color;
};

// A hundredth of the extent's larger side, within what a drawing can hold: legible in a picture of
// the whole plan.
double labelHeightFor(const PlanExtent& extent);

// A node with the label's text, centred on its own origin, which the node's matrix brings to the
// label's centre. `name` is its object id and graphic name, to be given to no other node; without a
// real object id it is never drawn as an instance of another.
KtSceneNode makeLabelNode(const PlanLabel& label, double height, const std::u16string& name);
