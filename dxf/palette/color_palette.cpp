#include "dxf/palette/color_palette.h"

#include <cmath>
#include <cstddef>

namespace dxf2d {

namespace {

constexpr std::array<unsigned char, 255> kSearchOrder = {
    178, 176, 174, 172, 5,   170, 168, 158, 166, 148, 164, 98,  108, 128, 138, 156, 118, 162, 146,
    154, 160, 96,  106, 116, 126, 136, 152, 144, 142, 94,  104, 114, 124, 134, 150, 92,  102, 112,
    122, 132, 140, 3,   90,  100, 110, 120, 4,   130, 188, 88,  198, 186, 179, 169, 159, 149, 78,
    99,  109, 119, 129, 139, 86,  189, 89,  208, 199, 68,  79,  184, 84,  209, 69,  18,  248, 238,
    228, 218, 196, 28,  38,  19,  249, 239, 229, 219, 29,  48,  39,  49,  58,  59,  177, 167, 157,
    147, 76,  97,  107, 117, 127, 137, 182, 82,  187, 87,  206, 197, 66,  77,  194, 180, 175, 165,
    155, 145, 74,  95,  105, 115, 125, 135, 80,  207, 67,  16,  246, 236, 226, 216, 26,  36,  17,
    247, 237, 227, 217, 27,  46,  37,  47,  56,  57,  185, 85,  192, 173, 163, 153, 143, 72,  93,
    103, 113, 123, 133, 250, 204, 195, 64,  75,  183, 83,  205, 65,  251, 202, 193, 62,  73,  14,
    244, 234, 224, 214, 190, 24,  34,  15,  245, 235, 225, 215, 25,  44,  35,  45,  54,  55,  171,
    161, 151, 141, 70,  91,  101, 111, 121, 131, 203, 63,  252, 181, 81,  12,  242, 232, 222, 212,
    22,  32,  13,  243, 233, 223, 213, 23,  42,  33,  43,  52,  53,  253, 200, 191, 60,  71,  254,
    201, 61,  1,   10,  240, 230, 220, 6,   210, 20,  30,  11,  241, 231, 221, 211, 21,  40,  31,
    41,  2,   50,  51,  7,   8,   9,   255};

struct Rgb {
  double red;
  double green;
  double blue;
};

// Red, yellow, green, cyan, blue, magenta, and white three times.
constexpr std::array<Rgb, 9> kBasicColors = {{{1, 0, 0},
                                              {1, 1, 0},
                                              {0, 1, 0},
                                              {0, 1, 1},
                                              {0, 0, 1},
                                              {1, 0, 1},
                                              {1, 1, 1},
                                              {1, 1, 1},
                                              {1, 1, 1}}};

// The full colors of the 24 hues, ten indices each from 10 on.
constexpr std::array<Rgb, 24> kHues = {
    {{1, 0, 0},   {1, 0.25, 0}, {1, 0.5, 0}, {1, 0.75, 0}, {1, 1, 0},   {0.75, 1, 0},
     {0.5, 1, 0}, {0.25, 1, 0}, {0, 1, 0},   {0, 1, 0.25}, {0, 1, 0.5}, {0, 1, 0.75},
     {0, 1, 1},   {0, 0.75, 1}, {0, 0.5, 1}, {0, 0.25, 1}, {0, 0, 1},   {0.25, 0, 1},
     {0.5, 0, 1}, {0.75, 0, 1}, {1, 0, 1},   {1, 0, 0.75}, {1, 0, 0.5}, {1, 0, 0.25}}};

// Brightness of a hue's five pairs of a full and a half-saturated shade.
constexpr std::array<double, 5> kShades = {1.0, 0.65, 0.5, 0.3, 0.15};

constexpr std::array<double, 6> kGrays = {0.33, 0.464, 0.598, 0.732, 0.866, 1.0};

constexpr Rgb hueShade(int index) {
  const Rgb& hue = kHues[static_cast<std::size_t>((index - 10) / 10)];
  const double shade = kShades[static_cast<std::size_t>(index % 10 / 2)];
  if (index % 2 == 0) {
    return {shade * hue.red, shade * hue.green, shade * hue.blue};
  }
  return {shade * (0.5 + 0.5 * hue.red), shade * (0.5 + 0.5 * hue.green),
          shade * (0.5 + 0.5 * hue.blue)};
}

constexpr Rgb colorOf(int index) {
  if (index < 10) {
    return kBasicColors[static_cast<std::size_t>(index - 1)];
  }
  if (index >= 250) {
    const double gray = kGrays[static_cast<std::size_t>(index - 250)];
    return {gray, gray, gray};
  }
  if (index == 108) {
    return {0, 0.15, 0.09375};
  }
  if (index == 118) {
    return {0, 0.15, 0.75};
  }
  return hueShade(index);
}

constexpr std::array<PaletteColor, 255> makePalette() {
  std::array<PaletteColor, 255> palette{};
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const Rgb color = colorOf(kSearchOrder[i]);
    palette[i] = {kSearchOrder[i], color.red, color.green, color.blue};
  }
  return palette;
}

}  // namespace

constexpr std::array<PaletteColor, 255> kColorPalette = makePalette();

int nearestPaletteIndex(double r, double g, double b) {
  double bestDistance = 10000.0;
  int result = 0;
  for (const PaletteColor& color : kColorPalette) {
    const double dr = color.red - r;
    const double dg = color.green - g;
    const double db = color.blue - b;
    const double distance = std::sqrt((dr * dr + dg * dg) + db * db);
    if (bestDistance > distance) {
      bestDistance = distance;
      result = color.index;
    }
  }
  return result;
}

}  // namespace dxf2d
