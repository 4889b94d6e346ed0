#include "fuzz/random_host/host_content.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "fuzz/geometry_input.h"

namespace {

std::u16string fromAscii(std::string_view text) { return {text.begin(), text.end()}; }

void appendLines(FuzzedDataProvider& data, std::u16string& label) {
  const auto count = data.ConsumeIntegralInRange<int>(0, 4);
  for (int line = 0; line < count; ++line) {
    label += u" \"";
    for (const char16_t unit : takeText(data)) {
      label += unit == u'"' || unit == u'\\' ? u"\\" : u"";
      label += unit;
    }
    label += u'"';
  }
}

}  // namespace

double takeReal(FuzzedDataProvider& data) { return takeCoordinate(data); }

std::u16string takeText(FuzzedDataProvider& data) {
  constexpr std::size_t kMostBytes = 64;
  const bool units = data.ConsumeBool();
  const std::string bytes = data.ConsumeRandomLengthString(kMostBytes);
  if (!units) {
    return fromAscii(bytes);
  }
  std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return text;
}

std::u16string takeName(FuzzedDataProvider& data) {
  constexpr std::array kNames = {u"", u"A", u"B", u"leg"};
  const auto kind = data.ConsumeIntegralInRange<std::size_t>(0, kNames.size());
  return kind < kNames.size() ? kNames[kind] : takeText(data);
}

std::u16string takeLabel(FuzzedDataProvider& data) {
  std::array<std::u16string, 13> fields = {u"1", u"2.5", u"0", u"10", u"20", u"5", u"30",
                                           u"C", u"0",   u"1", u"0",  u"0",  u"0"};
  constexpr std::array kOddFields = {u"L",    u"R", u"X",       u"-2.5", u"1e15",      u"1e-300",
                                     u"-0.0", u"0", u"0.00001", u"255",  u"4294967295"};
  const auto changes = data.ConsumeIntegralInRange<int>(0, 3);
  for (int change = 0; change < changes; ++change) {
    std::u16string& field = fields[data.ConsumeIntegralInRange<std::size_t>(0, fields.size() - 1)];
    const auto kind = data.ConsumeIntegralInRange<std::size_t>(0, kOddFields.size());
    field = kind < kOddFields.size() ? kOddFields[kind] : takeText(data);
  }
  std::u16string label = u"T:";
  for (const std::u16string& field : fields) {
    label += field + u' ';
  }
  appendLines(data, label);
  return label;
}

KtSceneNode takeNode(FuzzedDataProvider& data) {
  KtSceneNode node;
  node.graphicName = takeName(data);
  node.objectId = takeName(data);
  node.realObjectId = data.ConsumeBool() ? node.objectId : takeName(data);
  node.hasGraphicItem = data.ConsumeIntegralInRange(0, 3) != 0;
  node.matrix = takeMatrix(data);
  const auto surface = data.ConsumeIntegralInRange(0, 7);
  if (surface == 1) {
    node.color = {takeReal(data), takeReal(data), takeReal(data)};
  } else if (surface == 2) {
    node.material = std::make_unique<KtMaterial>();
  }
  return node;
}

std::vector<double> takeSizes(FuzzedDataProvider& data) {
  std::vector<double> sizes(data.ConsumeIntegralInRange<std::size_t>(0, 4));
  for (double& size : sizes) {
    size = takeReal(data);
  }
  return sizes;
}

AnyLabel::AnyLabel(FuzzedDataProvider& data)
    : KtGraphicNode(data.ConsumeIntegralInRange(0, 7) != 0),
      hasText_(data.ConsumeIntegralInRange(0, 7) != 0),
      text_(data.ConsumeIntegralInRange(0, 3) != 0 ? takeLabel(data) : takeText(data)) {}

bool AnyLabel::GetLabelText(std::u16string& text) const {
  if (hasText_) {
    text = text_;
  }
  return hasText_;
}

AnyShape::AnyShape(FuzzedDataProvider& data)
    : KtGeometry(data.PickValueInArray(
          {KTV_GRAPHIC_TYPE_UNKNOWN, KTV_GRAPHIC_TYPE_BOX, KTV_GRAPHIC_TYPE_CYLINDER})),
      hasSizes_(data.ConsumeBool()),
      sizes_(takeSizes(data)) {}

bool AnyShape::GetParameters(std::vector<double>& parameters) const {
  if (hasSizes_) {
    parameters = sizes_;
  }
  return hasSizes_;
}
