// Pictures of drawings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/drawing/drawing.h"
#include "app/preview/sheet.h"

namespace dxf2d {

enum class PictureFormat { kPng, kSvg, kPdf };

// The format that the end of a file name stands for, in letters of either case.
std::optional<PictureFormat> pictureFormat(std::string_view path);
// ".png" and so on.
const char* endOf(PictureFormat format);

inline constexpr int kMinPictureSize = 16;
inline constexpr int kMaxPictureSize = 10'000;
inline constexpr int kDefaultPictureSize = 1600;

// Points, letters and lines after which a drawing, with every INSERT expanded, has no picture: tens
// of seconds of drawing.
inline constexpr std::size_t kMaxPictureStrokes = 5'000'000;
// Bytes of the largest picture.
inline constexpr std::size_t kMaxPictureBytes = std::size_t{128} << 20;

struct PictureStyle {
  PictureFormat format = PictureFormat::kPng;
  // Longer side, in pixels for PNG and SVG and in points for PDF.
  int size = kDefaultPictureSize;
  // Of the drawing's texts; one that isTextCodePage knows.
  unsigned codePage = 1252;
  // For a picture true to size, in place of `size`.
  std::optional<Sheet> sheet{};
  // What errors call the drawing.
  std::string name{};
};

struct Picture {
  // The file's content; empty when the drawing shows nothing.
  std::string bytes;
  // Entities with a point beyond the range of numbers once placed, left out.
  std::size_t leftOut = 0;
};

// Draws what the ENTITIES section shows on white, fitted into the page, in true colors or those of
// the palette, hidden lines dashed: lines 1.5 wide, or on a sheet in their weights. Text too small
// to read becomes a line of its length. Throws UsageError for what does not fit on its sheet,
// LimitError beyond the two limits above, std::runtime_error when the picture cannot be made,
// std::bad_alloc when there is no room for it.
Picture drawPicture(const Drawing& drawing, const PictureStyle& style);

}  // namespace dxf2d
