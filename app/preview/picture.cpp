#include "app/preview/picture.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <stdexcept>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_nesting.h"
#include "app/drawing/group_reader.h"
#include "app/preview/cairo_renderer.h"
#include "app/preview/page_fit.h"
#include "app/preview/placed_extents.h"
#include "app/preview/png_resolution.h"
#include "app/preview/text_shaper.h"
#include "app/preview/title_line.h"

namespace dxf2d {

namespace {

using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;
using Context = std::unique_ptr<cairo_t, void (*)(cairo_t*)>;

class PictureTooLarge : public std::exception {};

void requireSuccess(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) {
    return;
  }
  if (status == CAIRO_STATUS_NO_MEMORY) {
    throw std::bad_alloc();
  }
  // Nothing else is written to.
  if (status == CAIRO_STATUS_WRITE_ERROR) {
    throw PictureTooLarge();
  }
  throw std::runtime_error(std::string("cannot draw the picture: ") +
                           cairo_status_to_string(status));
}

// cairo calls this from C, where no exception may pass.
cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned length) noexcept {
  try {
    std::string& bytes = *static_cast<std::string*>(closure);
    if (bytes.size() + length > kMaxPictureBytes) {
      return CAIRO_STATUS_WRITE_ERROR;
    }
    bytes.append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

Surface createSurface(PictureFormat format, const PageFit& fit, std::string& bytes) {
  cairo_surface_t* surface = nullptr;
  switch (format) {
    case PictureFormat::kPng:
      surface =
          cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(fit.width)),
                                     static_cast<int>(std::ceil(fit.height)));
      break;
    case PictureFormat::kSvg:
      surface = cairo_svg_surface_create_for_stream(appendBytes, &bytes, fit.width, fit.height);
      cairo_svg_surface_set_document_unit(
          surface, fit.millimeter > 0.0 ? CAIRO_SVG_UNIT_MM : CAIRO_SVG_UNIT_PX);
      break;
    case PictureFormat::kPdf:
      surface = cairo_pdf_surface_create_for_stream(appendBytes, &bytes, fit.width, fit.height);
      break;
  }
  requireSuccess(cairo_surface_status(surface));
  return Surface(surface, cairo_surface_destroy);
}

PlanExtents measureDrawing(const Drawing& drawing, TextShaper& texts, const std::string& name) {
  PlanExtents extents;
  std::size_t strokes = 0;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    strokes += strokesOf(entity);
    if (strokes > kMaxPictureStrokes) {
      throw LimitError(name, tr("makes a picture of more than %1 points and letters",
                                {std::to_string(kMaxPictureStrokes)}));
    }
    const PlanExtents placed = placedExtents(entity, placement, texts);
    if (placed.IsFinite()) {
      extents.Add(placed);
    }
  });
  return extents;
}

// Returns the number of entities left out.
std::size_t drawEntities(cairo_t* cairo, const Drawing& drawing, const PageFit& fit,
                         TextShaper& texts) {
  CairoRenderer pen(cairo, fit, texts, drawing);
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

// Page units of a millimeter.
double millimeterOf(PictureFormat format, const Sheet& sheet) {
  constexpr double kInch = 25.4;
  constexpr double kPointsOfInch = 72.0;
  switch (format) {
    case PictureFormat::kPng:
      return sheet.dpi / kInch;
    case PictureFormat::kPdf:
      return kPointsOfInch / kInch;
    case PictureFormat::kSvg:
      break;
  }
  return 1.0;
}

void checkPageSize(const PageFit& page, const PictureStyle& style) {
  // The largest page that PDF has, and millimeters that cairo's coordinates hold.
  constexpr double kMostPoints = 14'400.0;
  constexpr double kMostMillimeters = 1e6;
  const double longer = std::max(page.width, page.height);
  if (style.format == PictureFormat::kPng && !(longer <= kMaxPictureSize)) {
    throw UsageError({style.name, tr("its picture has more than 10000 pixels in a row"),
                      tr("choose a --paper, or make --dpi or --plot-scale smaller")});
  }
  if (!(longer <= (style.format == PictureFormat::kPdf ? kMostPoints : kMostMillimeters))) {
    throw UsageError({style.name, tr("its picture is larger than its format can hold"),
                      tr("choose a --paper, or make --plot-scale smaller")});
  }
}

PageFit fitSheet(const SheetLayout& layout, const PictureStyle& style) {
  const double millimeter = millimeterOf(style.format, *style.sheet);
  PageFit page;
  page.width = layout.width * millimeter;
  page.height = layout.height * millimeter;
  page.scale = layout.scale * millimeter;
  page.center = layout.center;
  page.middle = {layout.middle.x * millimeter, layout.middle.y * millimeter};
  page.millimeter = millimeter;
  // Pictures without pixels are looked at closely, and cut by machines.
  constexpr double kFinest = 0.004;
  page.resolution = style.format == PictureFormat::kPng ? 1.0 : kFinest * millimeter;
  checkPageSize(page, style);
  return page;
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

Picture draw(const Drawing& drawing, const PictureStyle& style) {
  Picture picture;
  TextShaper texts(style.codePage);
  const PlanExtents extents = measureDrawing(drawing, texts, style.name);
  if (extents.IsEmpty()) {
    return picture;
  }
  // A resolution alone says nothing to pictures without pixels.
  const bool isSheet =
      style.sheet && (style.sheet->hasScale || style.format == PictureFormat::kPng);
  SheetLayout layout;
  if (isSheet) {
    layout = layOutSheet(extents, *style.sheet, drawing.units, style.name);
  }
  const PageFit fit = isSheet ? fitSheet(layout, style) : fitPage(extents, style.size);
  const Surface surface = createSurface(style.format, fit, picture.bytes);
  picture.leftOut = drawPage(surface.get(), drawing, fit, texts);
  if (isSheet && style.sheet->title) {
    const Context cairo(cairo_create(surface.get()), cairo_destroy);
    drawTitleLine(cairo.get(), layout, *style.sheet, texts, fit.millimeter);
    requireSuccess(cairo_status(cairo.get()));
  }
  if (style.format == PictureFormat::kPng) {
    requireSuccess(cairo_surface_write_to_png_stream(surface.get(), appendBytes, &picture.bytes));
    if (isSheet) {
      setPngResolution(picture.bytes, style.sheet->dpi);
    }
  }
  cairo_surface_finish(surface.get());
  requireSuccess(cairo_surface_status(surface.get()));
  return picture;
}

}  // namespace

Picture drawPicture(const Drawing& drawing, const PictureStyle& style) {
  try {
    return draw(drawing, style);
  } catch (const PictureTooLarge&) {
    throw LimitError(style.name, tr("makes a picture of more than %1 MiB",
                                    {std::to_string(kMaxPictureBytes >> 20)}));
  }
}

}  // namespace dxf2d
