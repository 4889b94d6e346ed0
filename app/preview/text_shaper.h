// How much room the texts of a drawing take.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "app/drawing/drawing.h"

namespace dxf2d {

// One text, with lengths in heights of a capital letter. `width` is before the width factor.
struct ShapedText {
  std::string utf8;
  double width = 0.0;
};

// Decodes and measures texts, each once. Texts are known by their address, so the drawing must
// stay where it is.
class TextShaper {
 public:
  // `codePage` is one that isTextCodePage knows.
  explicit TextShaper(unsigned codePage);

  // What is longer than kMaxTextBytes is cut.
  const ShapedText& Shape(const TextEntity& text);
  // Whether a text shows anything: letters of some height.
  bool IsVisible(const TextEntity& text);

  cairo_font_face_t* Face() const { return face_.get(); }
  // Font size that makes a capital letter 1 high.
  double UnitSize() const { return 1.0 / capitalHeight_; }
  // How far letters reach above and below the baseline.
  double Ascent() const { return ascent_; }
  double Descent() const { return descent_; }

 private:
  unsigned codePage_;
  std::unique_ptr<cairo_font_face_t, void (*)(cairo_font_face_t*)> face_;
  std::unique_ptr<cairo_scaled_font_t, void (*)(cairo_scaled_font_t*)> font_;
  double capitalHeight_ = 0.0;
  double ascent_ = 0.0;
  double descent_ = 0.0;
  std::unordered_map<const TextEntity*, ShapedText> shaped_;
};

// From the text's point to where its baseline begins, in heights of a capital letter, before the
// width factor and the rotation.
PlanPoint baselineStart(const TextEntity& text, const ShapedText& shaped, double descent);

}  // namespace dxf2d
