#include "app/model/plan_label.h"

#include <algorithm>
#include <charconv>

namespace dxf2d {
namespace {

// In the shortest form that reads as the same number.
void addNumber(std::u16string& text, double value) {
  char digits[32];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), value);
  text.append(std::begin(digits), end.ptr);
  text += u' ';
}

void addLine(std::u16string& text, const std::u16string& line) {
  text += u'"';
  for (const char16_t c : line) {
    if (c == u'"' || c == u'\\') {
      text += u'\\';
    }
    text += c;
  }
  text += u'"';
}

// Tag; width, height and depth; x, y, z and angle; alignment and frame; color; flags; the line.
std::u16string labelString(const PlanLabel& label) {
  std::u16string text = u"T:1 ";
  addNumber(text, label.height);
  // The node's color index takes the place of the color in the text.
  text += u"0 0 0 0 0 C 0 0 0 0 0 ";
  addLine(text, label.text);
  return text;
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
