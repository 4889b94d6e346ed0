// Pictures of drawings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/preview/drawing.h"

enum class PictureFormat { kPng, kSvg, kPdf };

// The format that the end of a file name stands for, in letters of either case.
std::optional<PictureFormat> pictureFormat(std::string_view path);

inline constexpr int kMinPictureSize = 16;
inline constexpr int kMaxPictureSize = 10'000;
inline constexpr int kDefaultPictureSize = 1600;

struct PictureStyle {
  PictureFormat format = PictureFormat::kPng;
  // Longer side, in pixels for PNG and SVG and in points for PDF.
  int size = kDefaultPictureSize;
  // Of the drawing's texts; one that isTextCodePage knows.
  unsigned codePage = 1252;
};

struct Picture {
  // The file's content; empty when the drawing shows nothing.
  std::string bytes;
  // Entities with a point beyond the range of numbers once placed, left out.
  std::size_t leftOut = 0;
};

// Draws what the ENTITIES section shows on white, fitted into the page: lines 1.5 wide, in the
// colours of the palette. Text too small to read becomes a line of its length. Throws
// std::runtime_error when the picture cannot be made, std::bad_alloc when there is no room for it.
Picture drawPicture(const Drawing& drawing, const PictureStyle& style);
