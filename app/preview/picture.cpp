#include "app/preview/picture.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>

#include "app/preview/drawing_nesting.h"
#include "app/preview/page_fit.h"
#include "app/preview/page_pen.h"
#include "app/preview/placed_extents.h"
#include "app/preview/text_shaper.h"

namespace {

using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;
using Context = std::unique_ptr<cairo_t, void (*)(cairo_t*)>;

void requireSuccess(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  if (status == CAIRO_STATUS_NO_MEMORY) throw std::bad_alloc();
  throw std::runtime_error(std::string("cannot draw the picture: ") +
                           cairo_status_to_string(status));
}

// cairo calls this from C, where no exception may pass.
cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned length) noexcept {
  try {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

Surface createSurface(PictureFormat format, const PageFit& fit, std::string& bytes) {
  cairo_surface_t* surface = nullptr;
  switch (format) {
    case PictureFormat::kPng:
      surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, fit.width, fit.height);
      break;
    case PictureFormat::kSvg:
      surface = cairo_svg_surface_create_for_stream(appendBytes, &bytes, fit.width, fit.height);
      cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
      break;
    case PictureFormat::kPdf:
      surface = cairo_pdf_surface_create_for_stream(appendBytes, &bytes, fit.width, fit.height);
      break;
  }
  requireSuccess(cairo_surface_status(surface));
  return Surface(surface, cairo_surface_destroy);
}

PlanExtents measureDrawing(const Drawing& drawing, TextShaper& texts) {
  PlanExtents extents;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    const PlanExtents placed = placedExtents(entity, placement, texts);
    if (placed.IsFinite()) extents.Add(placed);
  });
  return extents;
}

// Returns the number of entities left out.
std::size_t drawEntities(cairo_t* cairo, const Drawing& drawing, const PageFit& fit,
                         TextShaper& texts) {
  PagePen pen(cairo, fit, texts);
  std::size_t leftOut = 0;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    if (placedExtents(entity, placement, texts).IsFinite()) {
      pen.Draw(entity, placement);
    } else {
      ++leftOut;
    }
  });
  return leftOut;
}

std::size_t drawPage(cairo_surface_t* surface, const Drawing& drawing, const PageFit& fit,
                     TextShaper& texts) {
  const Context cairo(cairo_create(surface), cairo_destroy);
  cairo_set_source_rgb(cairo.get(), 1.0, 1.0, 1.0);
  cairo_paint(cairo.get());
  const std::size_t leftOut = drawEntities(cairo.get(), drawing, fit, texts);
  requireSuccess(cairo_status(cairo.get()));
  return leftOut;
}

}  // namespace

std::optional<PictureFormat> pictureFormat(std::string_view path) {
  constexpr std::size_t kEndLength = 4;
  if (path.size() < kEndLength) return std::nullopt;
  std::string end(path.substr(path.size() - kEndLength));
  std::ranges::transform(end, end.begin(), [](unsigned char letter) {
    return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
  });
  if (end == ".png") return PictureFormat::kPng;
  if (end == ".svg") return PictureFormat::kSvg;
  if (end == ".pdf") return PictureFormat::kPdf;
  return std::nullopt;
}

Picture drawPicture(const Drawing& drawing, const PictureStyle& style) {
  Picture picture;
  TextShaper texts(style.codePage);
  const PlanExtents extents = measureDrawing(drawing, texts);
  if (extents.IsEmpty()) return picture;
  const PageFit fit = fitPage(extents, style.size);
  const Surface surface = createSurface(style.format, fit, picture.bytes);
  picture.leftOut = drawPage(surface.get(), drawing, fit, texts);
  if (style.format == PictureFormat::kPng) {
    requireSuccess(cairo_surface_write_to_png_stream(surface.get(), appendBytes, &picture.bytes));
  }
  cairo_surface_finish(surface.get());
  requireSuccess(cairo_surface_status(surface.get()));
  return picture;
}
