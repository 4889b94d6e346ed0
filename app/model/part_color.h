// The colors that the parts of a model are drawn in.
#pragma once

#include <array>
#include <optional>

struct aiMaterial;

namespace dxf2d {

// Red, green, blue, from 0 to 1.
using Color = std::array<double, 3>;

// White is drawn with index 7, the pen that readers show as black on a white sheet and as white on
// a black one. A part without any color would be drawn with index 254, a pale gray.
inline constexpr Color kDefaultPen{1.0, 1.0, 1.0};

// What becomes of a model's colors in a drawing.
enum class PlanColors {
  // As they are.
  kModel,
  // Darkened until they stand out on a white sheet.
  kDark,
  // Everything in the default pen.
  kNone,
};

// The base color, or the diffuse color where there is none. Empty when the material has neither, or
// one that is not finite, and for the gray one that assimp gives to faces without a material.
std::optional<Color> materialColor(const aiMaterial& material);

// The color to draw a part in whose material has `color`; the default pen where it has none. With
// kDark, the color of the first palette entry on the way to black that is the default pen or has a
// contrast of at least kMinContrast on white.
Color drawnColor(const std::optional<Color>& color, PlanColors choice);

// The color itself of what drawnColor draws in a palette entry, nothing for the default pen. With
// kDark it is darkened until its contrast on white is kMinContrast.
std::optional<Color> exactColor(const std::optional<Color>& color, PlanColors choice);

// What WCAG 2.1 asks of graphical objects (success criterion 1.4.11).
inline constexpr double kMinContrast = 3.0;

// The contrast ratio of a color on white, from 1 to 21, as WCAG 2.1 defines it.
double contrastOnWhite(const Color& color);

}  // namespace dxf2d
