// The palette of color indices.
#pragma once

#include <array>

namespace dxf2d {

// One palette color; components from 0 to 1.
struct PaletteColor {
  int index;
  double red;
  double green;
  double blue;
};

// The 255 colors in the order in which they are searched, which decides ties. Indices 8 and 9 are
// white here and not the grays that other tables have, and 108 and 118 depart from their row's
// rule: drawings depend on both.
extern const std::array<PaletteColor, 255> kColorPalette;

// The index of the color nearest to (r, g, b) by Euclidean distance; of equally near ones the
// first in search order. Components are not clamped; 0 when none is nearer than 10000, which takes
// components that are huge or not numbers.
int nearestPaletteIndex(double r, double g, double b);

}  // namespace dxf2d
