#include "tests/app/preview/picture_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "app/drawing/dxf_reader.h"
#include "app/preview/picture.h"

namespace dxf2d {

namespace {

cairo_status_t readBytes(void* closure, unsigned char* data, unsigned length) {
  auto& rest = *static_cast<std::string_view*>(closure);
  if (rest.size() < length) {
    return CAIRO_STATUS_READ_ERROR;
  }
  std::memcpy(data, rest.data(), length);
  rest.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

PicturePixels::PicturePixels(std::string_view png)
    : surface_(cairo_image_surface_create_from_png_stream(readBytes, &png), cairo_surface_destroy) {
  EXPECT_EQ(cairo_surface_status(surface_.get()), CAIRO_STATUS_SUCCESS);
}

PicturePixels PicturePixels::OfDrawing(const std::string& text, int size) {
  return PicturePixels(
      drawPicture(parseDrawing(text, "plan.dxf"), {PictureFormat::kPng, size, 1252}).bytes);
}

int PicturePixels::Width() const { return cairo_image_surface_get_width(surface_.get()); }

int PicturePixels::Height() const { return cairo_image_surface_get_height(surface_.get()); }

Pixel PicturePixels::At(int x, int y) const {
  const unsigned char* row = cairo_image_surface_get_data(surface_.get()) +
                             std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface_.get());
  std::uint32_t value = 0;
  std::memcpy(&value, row + std::ptrdiff_t{x} * 4, sizeof value);
  return {static_cast<int>(value >> 16 & 0xFF), static_cast<int>(value >> 8 & 0xFF),
          static_cast<int>(value & 0xFF)};
}

Pixel PicturePixels::InkNear(double x, double y) const {
  constexpr int kReach = 2;
  Pixel ink{255, 255, 255};
  const int left = static_cast<int>(x) - kReach;
  const int top = static_cast<int>(y) - kReach;
  for (int row = std::max(0, top); row <= std::min(Height() - 1, top + 2 * kReach); ++row) {
    for (int column = std::max(0, left); column <= std::min(Width() - 1, left + 2 * kReach);
         ++column) {
      const Pixel pixel = At(column, row);
      const bool darker = pixel.red + pixel.green + pixel.blue < ink.red + ink.green + ink.blue;
      if (darker) {
        ink = pixel;
      }
    }
  }
  return ink;
}

PixelBox PicturePixels::InkBoxWithin(PixelBox box) const {
  PixelBox ink{box.right + 1, box.bottom + 1, box.left - 1, box.top - 1};
  for (int y = box.top; y <= box.bottom; ++y) {
    for (int x = box.left; x <= box.right; ++x) {
      if (At(x, y).IsWhite()) {
        continue;
      }
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x),
             std::max(ink.bottom, y)};
    }
  }
  return ink;
}

}  // namespace dxf2d
