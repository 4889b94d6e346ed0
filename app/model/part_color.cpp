#include "app/model/part_color.h"

#include <assimp/material.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "dxf/palette/color_palette.h"

namespace dxf2d {
namespace {

// A component of sRGB as a share of light (WCAG 2.1, relative luminance).
double linearized(double component) {
  return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

// The palette's color that a drawing shows for `color`.
Color paletteColor(const Color& color) {
  const int index = nearestPaletteIndex(color[0], color[1], color[2]);
  const auto* const entry = std::ranges::find_if(
      kColorPalette, [index](const PaletteColor& c) { return c.index == index; });
  return {entry->red, entry->green, entry->blue};
}

// Steps from a color to black.
constexpr int kSteps = 32;

Color darkened(const Color& color) {
  for (int step = 0; step < kSteps; ++step) {
    const double share = 1.0 - static_cast<double>(step) / kSteps;
    const Color shown = paletteColor({share * color[0], share * color[1], share * color[2]});
    if ((step == 0 && shown == kDefaultPen) || contrastOnWhite(shown) >= kMinContrast) {
      return shown;
    }
  }
  return paletteColor({});
}

// Whether this is the gray material, without a name or with a name of its own, that assimp gives to
// faces without any.
bool isReadersDefault(const aiMaterial& material, const aiColor4D& color) {
  constexpr float kGray = 0.6F;
  aiString name;
  const bool isNamed = material.Get(AI_MATKEY_NAME, name) == AI_SUCCESS && name.length != 0;
  const bool isOwn = isNamed && std::string_view(name.C_Str()) != AI_DEFAULT_MATERIAL_NAME;
  aiColor4D base;
  return !isOwn && material.Get(AI_MATKEY_BASE_COLOR, base) != AI_SUCCESS && color.r == kGray &&
         color.g == kGray && color.b == kGray;
}

}  // namespace

std::optional<Color> materialColor(const aiMaterial& material) {
  aiColor4D color;
  if (material.Get(AI_MATKEY_BASE_COLOR, color) != AI_SUCCESS &&
      material.Get(AI_MATKEY_COLOR_DIFFUSE, color) != AI_SUCCESS) {
    return std::nullopt;
  }
  if (isReadersDefault(material, color)) {
    return std::nullopt;
  }
  Color result{color.r, color.g, color.b};
  for (double& component : result) {
    if (!std::isfinite(component)) {
      return std::nullopt;
    }
    component = std::clamp(component, 0.0, 1.0);
  }
  return result;
}

Color drawnColor(const std::optional<Color>& color, PlanColors choice) {
  if (!color || choice == PlanColors::kNone) {
    return kDefaultPen;
  }
  return choice == PlanColors::kDark ? darkened(*color) : *color;
}

std::optional<Color> exactColor(const std::optional<Color>& color, PlanColors choice) {
  if (drawnColor(color, choice) == kDefaultPen) {
    return std::nullopt;
  }
  if (choice == PlanColors::kModel) {
    return color;
  }
  Color shown{};
  for (int step = 0; step < kSteps; ++step) {
    const double share = 1.0 - static_cast<double>(step) / kSteps;
    shown = {share * (*color)[0], share * (*color)[1], share * (*color)[2]};
    if (contrastOnWhite(shown) >= kMinContrast) {
      break;
    }
  }
  return shown;
}

double contrastOnWhite(const Color& color) {
  const double luminance = (0.2126 * linearized(color[0]) + 0.7152 * linearized(color[1])) +
                           0.0722 * linearized(color[2]);
  return 1.05 / (luminance + 0.05);
}

}  // namespace dxf2d
