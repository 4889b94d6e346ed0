#include "app/preview/title_line.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace dxf2d {

namespace {

// Millimeters on paper.
constexpr double kTextHeight = 3.0;
constexpr double kMostBar = 60.0;
constexpr double kBarHeight = 1.5;

std::string numberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", value);
  return text;
}

// The length as people say it.
std::string lengthText(double millimeters) {
  constexpr double kMeter = 1000.0;
  constexpr double kKilometer = 1e6;
  if (millimeters >= kKilometer) {
    return numberText(millimeters / kKilometer) + " km";
  }
  return millimeters >= kMeter ? numberText(millimeters / kMeter) + " m"
                               : numberText(millimeters) + " mm";
}

double widthOf(cairo_t* cairo, const std::string& text) {
  cairo_text_extents_t extents;
  cairo_text_extents(cairo, text.c_str(), &extents);
  return extents.x_advance;
}

void showText(cairo_t* cairo, double x, double y, const std::string& text) {
  cairo_move_to(cairo, x, y);
  cairo_show_text(cairo, text.c_str());
}

}  // namespace

double roundLength(double most) {
  const double power = std::pow(10.0, std::floor(std::log10(most)));
  for (const double step : {5.0, 2.0}) {
    if (step * power <= most) {
      return step * power;
    }
  }
  return power;
}

std::string scaleText(double ratio) {
  return ratio >= 1.0 ? numberText(ratio) + ":1" : "1:" + numberText(1.0 / ratio);
}

void drawTitleLine(cairo_t* cairo, const SheetLayout& layout, const Sheet& sheet,
                   const TextShaper& texts, double unitsPerMillimeter) {
  cairo_save(cairo);
  cairo_scale(cairo, unitsPerMillimeter, unitsPerMillimeter);
  cairo_set_source_rgb(cairo, 0.0, 0.0, 0.0);
  cairo_set_font_face(cairo, texts.Face());
  cairo_set_font_size(cairo, kTextHeight * texts.UnitSize());
  const double baseline = layout.height - sheet.margin - 1.0;
  showText(cairo, sheet.margin, baseline, *sheet.title);
  const double right = layout.width - sheet.margin;
  // Drawn millimeters, or drawing units where those are not known.
  const double perLength = layout.unit > 0.0 ? layout.scale / layout.unit : layout.scale;
  const double most = std::min(kMostBar, (layout.width - 2.0 * sheet.margin) / 4.0) / perLength;
  if (std::isfinite(most) && most > 0.0) {
    const double bar = roundLength(most);
    const std::string label =
        layout.unit > 0.0 ? scaleText(perLength) + "   " + lengthText(bar) : numberText(bar);
    const double left = right - bar * perLength;
    cairo_rectangle(cairo, left, baseline - kBarHeight, bar * perLength, kBarHeight);
    cairo_set_line_width(cairo, 0.18);
    cairo_stroke(cairo);
    cairo_rectangle(cairo, left, baseline - kBarHeight, bar * perLength / 2.0, kBarHeight);
    cairo_fill(cairo);
    showText(cairo, left - widthOf(cairo, label) - 2.0, baseline, label);
  }
  cairo_restore(cairo);
}

}  // namespace dxf2d
