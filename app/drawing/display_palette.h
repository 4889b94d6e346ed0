// The colors in which a picture shows the palette indices of a drawing.
#pragma once

namespace dxf2d {

// Components from 0 to 1.
struct DisplayColor {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
};

// The color of a palette index on white paper: the format's palette, save that the entries which
// the export takes for white (7, 8, 9 and 255) are black, as is any number outside 1 to 255.
DisplayColor displayColor(int index);

}  // namespace dxf2d
