#include "app/model/plan_label.h"

#include <algorithm>

#include "ktscene/kt_label.h"

namespace dxf2d {
namespace {

std::u16string labelString(const PlanLabel& label) {
  // The node's color index takes the place of the color in the text.
  KtLabelContent content;
  content.height = label.height;
  content.align = u'C';
  content.lines = {label.text};
  return KtMakeLabel(content);
}

}  // namespace

double labelHeightFor(const PlanExtent& extent) {
  constexpr double kShareOfPlan = 0.01;
  const double larger = std::max(extent.maxX - extent.minX, extent.maxY - extent.minY);
  return std::clamp(kShareOfPlan * larger, kMinLabelHeight, kMaxLabelHeight);
}

KtSceneNode makeLabelNode(const PlanLabel& label, int colorIndex, const std::u16string& name) {
  KtSceneNode node;
  node.objectId = name;
  node.graphicName = name;
  PlanPlacement placement;
  placement.cosine = label.isUpright ? 0.0 : 1.0;
  placement.sine = label.isUpright ? 1.0 : 0.0;
  placement.shift = {label.center[0], label.center[1], 0.0};
  node.matrix = placement.Matrix();
  node.label = std::make_unique<KtLabel>();
  node.label->text = labelString(label);
  node.label->colorIndex = colorIndex;
  return node;
}

}  // namespace dxf2d
