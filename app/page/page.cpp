#include "app/page/page.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "app/drawing/display_palette.h"
#include "app/drawing/drawing_units.h"
#include "app/drawing/text_decoding.h"
#include "app/page/page_files.h"
#include "app/page/page_numbers.h"
#include "app/page/page_text.h"

namespace dxf2d::page {

namespace {

using Json = nlohmann::ordered_json;

// 0xRRGGBB; on white paper, black for what is white on a dark screen.
std::int32_t rgbOf(int color, std::int32_t trueColor) {
  if (trueColor != kNoTrueColor) {
    return trueColor;
  }
  constexpr double kMost = 255.0;
  const DisplayColor shown = displayColor(color);
  std::int32_t rgb = 0;
  for (const double component : {shown.red, shown.green, shown.blue}) {
    rgb = rgb << 8 | static_cast<std::int32_t>(std::lround(component * kMost));
  }
  return rgb;
}

Json layersOf(const Drawing& drawing, unsigned codePage) {
  Json layers = Json::array();
  for (const Layer& layer : drawing.layers) {
    layers.push_back({{"name", decodeText(layer.name, codePage)},
                      {"color", rgbOf(layer.color, layer.trueColor)},
                      {"dashed", layer.lineType == LineType::kDashed},
                      {"weight", layer.lineWeight}});
  }
  return layers;
}

// null where the layer decides.
Json stylesOf(const PageNumbers& numbers) {
  Json styles = Json::array();
  for (const auto& [layer, color, trueColor, lineType, weight] : numbers.styles) {
    const bool hasColor = color != kColorByLayer || trueColor != kNoTrueColor;
    styles.push_back(
        {{"layer", layer},
         {"color", hasColor ? Json(rgbOf(color, trueColor)) : Json()},
         {"dashed", lineType == LineType::kByLayer ? Json() : Json(lineType == LineType::kDashed)},
         {"weight", weight == kDefaultLineWeight ? Json() : Json(weight)}});
  }
  return styles;
}

std::string unitOf(const Drawing& drawing, const PageStyle& style) {
  const int units = drawing.units != 0 ? drawing.units : style.units;
  const std::string name = unitsName(units);
  return parseUnits(name) ? name : "";
}

// What stands beside the numbers. ASCII.
std::string describe(const Drawing& drawing, const PageStyle& style, const PageNumbers& numbers) {
  const PlanPoint low = numbers.extents.Low();
  const PlanPoint high = numbers.extents.High();
  const Json description{{"title", style.title},
                         {"unit", unitOf(drawing, style)},
                         {"extents", {low.x, low.y, high.x, high.y}},
                         {"dashLength", drawing.dashLength},
                         {"layers", layersOf(drawing, style.codePage)},
                         {"styles", stylesOf(numbers)},
                         {"names", numbers.names},
                         {"texts", numbers.strings},
                         {"blocks", numbers.blockNames.size()},
                         {"circles", numbers.circleStyles.size()},
                         {"inserts", numbers.insertBlocks.size()},
                         {"vertices", numbers.vertices.size() / 2},
                         {"lines", numbers.lineEnds.size()}};
  return description.dump(-1, ' ', true, Json::error_handler_t::replace);
}

// Forbids everything but the page's own script and style.
std::string policy() {
  return "default-src 'none'; script-src " + policySource(kScript) + "; style-src " +
         policySource(kStyle) +
         "; base-uri 'none'; form-action 'none'; require-trusted-types-for 'script'; "
         "trusted-types 'none'";
}

// The document with each "{{NAME}}" replaced; what replaces it is not looked at again.
std::string filled(std::string_view html,
                   const std::array<std::pair<std::string_view, std::string>, 6>& places) {
  std::string page;
  while (true) {
    const std::size_t begin = html.find("{{");
    page += html.substr(0, begin);
    if (begin == std::string_view::npos) {
      return page;
    }
    const std::size_t end = html.find("}}", begin);
    const std::string_view name = html.substr(begin + 2, end - begin - 2);
    for (const auto& [place, text] : places) {
      page += place == name ? text : "";
    }
    html.remove_prefix(end + 2);
  }
}

}  // namespace

Page makePage(const Drawing& drawing, const PageStyle& style) {
  const PageNumbers numbers = pageNumbers(drawing, style);
  Page page{{}, numbers.leftOut};
  if (numbers.extents.IsEmpty()) {
    return page;
  }
  page.html = filled(kHtml, {{{"TITLE", htmlText(style.title)},
                              {"POLICY", policy()},
                              {"STYLE", std::string(kStyle)},
                              {"SCRIPT", std::string(kScript)},
                              {"DRAWING", scriptText(describe(drawing, style, numbers))},
                              {"NUMBERS", base64Of(numbers.Bytes())}}});
  return page;
}

}  // namespace dxf2d::page
