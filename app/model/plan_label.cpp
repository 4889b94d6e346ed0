#include "app/model/plan_label.h"

#include <algorithm>
#include <charconv>

namespace {

// Outlines without a colour are drawn in it.
constexpr int kUncoloredIndex = 254;
constexpr int kColorInText = 0;

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
    if (c == u'"' || c == u'\\') text += u'\\';
    text += c;
  }
  text += u'"';
}

// Tag; width, height and depth; x, y, z and angle; alignment and frame; colour; flags; the line.
std::u16string labelString(const PlanLabel& label, double height) {
  std::u16string text = u"T:1 ";
  addNumber(text, height);
  text += u"0 0 0 0 0 C 0 ";
  for (const double component : label.color.value_or(std::array<double, 3>{})) {
    addNumber(text, component);
  }
  text += u"0 ";
  addLine(text, label.text);
  return text;
}

}  // namespace

double labelHeightFor(const PlanExtent& extent) {
  constexpr double kShareOfPlan = 0.01;
  const double larger = std::max(extent.maxX - extent.minX, extent.maxY - extent.minY);
  return std::clamp(kShareOfPlan * larger, kMinLabelHeight, kMaxLabelHeight);
}

KtSceneNode makeLabelNode(const PlanLabel& label, double height, const std::u16string& name) {
  KtSceneNode node;
  node.objectId = name;
  node.graphicName = name;
  node.matrix.SetTranslation(label.centre[0], label.centre[1], 0.0);
  node.label = std::make_unique<KtLabel>();
  node.label->text = labelString(label, height);
  node.label->colorIndex = label.color ? kColorInText : kUncoloredIndex;
  return node;
}
