#include "app/preview/text_shaper.h"

#include <algorithm>
#include <string_view>

#include "app/drawing/drawing_nesting.h"
#include "app/drawing/text_decoding.h"

namespace dxf2d {

namespace {

// Font size at which texts are measured; large, so that no rounding to pixels shows.
constexpr double kMeasuringSize = 1000.0;

cairo_scaled_font_t* createMeasuringFont(cairo_font_face_t* face) {
  cairo_matrix_t size;
  cairo_matrix_init_scale(&size, kMeasuringSize, kMeasuringSize);
  cairo_matrix_t identity;
  cairo_matrix_init_identity(&identity);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_scaled_font_t* font = cairo_scaled_font_create(face, &size, &identity, options);
  cairo_font_options_destroy(options);
  return font;
}

}  // namespace

TextShaper::TextShaper(unsigned codePage)
    : codePage_(codePage),
      face_(cairo_toy_font_face_create("sans-serif", CAIRO_FONT_SLANT_NORMAL,
                                       CAIRO_FONT_WEIGHT_NORMAL),
            cairo_font_face_destroy),
      font_(createMeasuringFont(face_.get()), cairo_scaled_font_destroy) {
  cairo_text_extents_t capital;
  cairo_scaled_font_text_extents(font_.get(), "H", &capital);
  cairo_font_extents_t font;
  cairo_scaled_font_extents(font_.get(), &font);
  // Where there is no font at all, that of common ones.
  constexpr double kUsualCapital = 0.7;
  capitalHeight_ = capital.height > 0.0 ? capital.height / kMeasuringSize : kUsualCapital;
  ascent_ = std::max(1.0, font.ascent / kMeasuringSize / capitalHeight_);
  descent_ = std::max(0.0, font.descent / kMeasuringSize / capitalHeight_);
}

const ShapedText& TextShaper::Shape(const TextEntity& text) {
  const auto [place, isNew] = shaped_.try_emplace(&text);
  ShapedText& shaped = place->second;
  if (isNew) {
    shaped.utf8 = decodeText(std::string_view(text.bytes).substr(0, kMaxTextBytes), codePage_);
    cairo_text_extents_t extents;
    cairo_scaled_font_text_extents(font_.get(), shaped.utf8.c_str(), &extents);
    shaped.width = std::max(0.0, extents.x_advance / kMeasuringSize / capitalHeight_);
  }
  return shaped;
}

bool TextShaper::IsVisible(const TextEntity& text) {
  return text.height > 0.0 && Shape(text).utf8.find_first_not_of(' ') != std::string::npos;
}

PlanPoint baselineStart(const TextEntity& text, const ShapedText& shaped, double descent) {
  PlanPoint start;
  if (text.across == TextAcross::kCenter) {
    start.x = -shaped.width / 2.0;
  }
  if (text.across == TextAcross::kRight) {
    start.x = -shaped.width;
  }
  if (text.up == TextUp::kBottom) {
    start.y = descent;
  }
  if (text.up == TextUp::kMiddle) {
    start.y = -0.5;
  }
  if (text.up == TextUp::kTop) {
    start.y = -1.0;
  }
  return start;
}

}  // namespace dxf2d
