// The pixels of a PNG picture in memory.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>
#include <string_view>

namespace dxf2d {

// Components from 0 to 255.
struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  bool IsWhite() const { return red == 255 && green == 255 && blue == 255; }
};

// An upright rectangle of pixels, both ends within it; empty when left > right.
struct PixelBox {
  int left = 0;
  int top = 0;
  int right = -1;
  int bottom = -1;
};

class PicturePixels {
 public:
  explicit PicturePixels(std::string_view png);
  // Draws `text` of a drawing at `size`.
  static PicturePixels OfDrawing(const std::string& text, int size);

  int Width() const;
  int Height() const;
  Pixel At(int x, int y) const;
  // The least white pixel within two of (x, y), where a thin line near it is seen.
  Pixel InkNear(double x, double y) const;
  // Of all pixels that are not white.
  PixelBox InkBox() const { return InkBoxWithin({0, 0, Width() - 1, Height() - 1}); }
  PixelBox InkBoxWithin(PixelBox box) const;

 private:
  std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface_;
};

}  // namespace dxf2d
