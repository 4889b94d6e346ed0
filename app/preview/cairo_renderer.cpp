#include "app/preview/cairo_renderer.h"

#include <algorithm>
#include <cmath>

#include "app/drawing/display_palette.h"
#include "app/preview/placed_extents.h"

namespace dxf2d {

namespace {

// In pixels or points of a page that is not a sheet.
constexpr double kLineWidth = 1.5;

// Of lines without a weight on a sheet.
constexpr double kUsualMillimeters = 0.25;

// Letters lower or narrower than this, in pixels, are a line.
constexpr double kLeastLetter = 0.75;

}  // namespace

CairoRenderer::CairoRenderer(cairo_t* cairo, const PageFit& fit, TextShaper& texts,
                             const Drawing& drawing)
    : cairo_(cairo), fit_(fit), texts_(texts), drawing_(drawing) {
  // Round, so that a path cut in two shows no seam and one without length shows a dot.
  cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
  cairo_set_font_face(cairo_, texts_.Face());
  cairo_matrix_t upright;
  cairo_matrix_init_scale(&upright, texts_.UnitSize(), -texts_.UnitSize());
  cairo_set_font_matrix(cairo_, &upright);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(cairo_, options);
  cairo_font_options_destroy(options);
}

void CairoRenderer::Draw(const DrawingEntity& entity, const Placement& placement) {
  struct Dispatch {
    CairoRenderer& pen;
    const Placement& placement;

    void operator()(const LineEntity& line) const {
      pen.SetStyle(line, placement);
      const PlanPoint ends[] = {line.start, line.end};
      pen.DrawLines(ends, false, placement);
    }
    void operator()(const PolylineEntity& polyline) const {
      pen.SetStyle(polyline, placement);
      pen.DrawLines(polyline.vertices, polyline.closed, placement);
    }
    void operator()(const FaceEntity& face) const {
      pen.SetStyle(face, placement);
      pen.DrawLines(face.corners, true, placement);
    }
    void operator()(const CircleEntity& circle) const {
      pen.SetStyle(circle, placement);
      pen.DrawCircle(circle, placement);
    }
    void operator()(const TextEntity& text) const {
      if (!pen.texts_.IsVisible(text)) {
        return;
      }
      pen.SetStyle(text, placement);
      pen.DrawText(text, placement);
    }
    void operator()(const InsertEntity&) const {}
  };
  std::visit(Dispatch{*this, placement}, entity);
}

void CairoRenderer::DrawLines(std::span<const PlanPoint> points, bool closed,
                              const Placement& placement) {
  if (points.empty()) {
    return;
  }
  const auto onPage = [&](PlanPoint point) { return fit_.Apply(placement.Apply(point)); };
  MoveTo(onPage(points.front()));
  for (const PlanPoint point : points) {
    LineTo(onPage(point));
  }
  if (closed && !isSplit_) {
    cairo_close_path(cairo_);
  } else {
    LineToLast(onPage(closed ? points.front() : points.back()));
  }
  cairo_stroke(cairo_);
}

void CairoRenderer::DrawCircle(const CircleEntity& circle, const Placement& placement) {
  const PlanPoint center = fit_.Apply(placement.Apply(circle.center));
  const double radius = circle.radius * fit_.scale;
  // A radius that is next to nothing has no arc to speak of.
  constexpr double kLeastRadius = 0.1;
  if (radius < kLeastRadius * fit_.resolution) {
    MoveTo(center);
    LineToLast(center);
  } else {
    cairo_new_sub_path(cairo_);
    cairo_arc(cairo_, center.x, center.y, radius, 0.0, 6.283185307179586);
    cairo_close_path(cairo_);
  }
  cairo_stroke(cairo_);
}

void CairoRenderer::DrawText(const TextEntity& text, const Placement& placement) {
  const ShapedText& shaped = texts_.Shape(text);
  const TextFrame frame(text);
  const auto onPage = [&](PlanPoint letters) {
    return fit_.Apply(placement.Apply(frame.Apply(letters)));
  };
  const PlanPoint start = baselineStart(text, shaped, texts_.Descent());
  const PlanPoint begin = onPage(start);
  const PlanPoint end = onPage({start.x + shaped.width, start.y});
  const PlanPoint top = onPage({start.x, start.y + 1.0});
  const double length = std::hypot(end.x - begin.x, end.y - begin.y);
  const double height = std::hypot(top.x - begin.x, top.y - begin.y);
  const double least = kLeastLetter * fit_.resolution;
  if (height < least || length < least) {
    MoveTo({(begin.x + top.x) / 2.0, (begin.y + top.y) / 2.0});
    LineToLast({end.x + (top.x - begin.x) / 2.0, end.y + (top.y - begin.y) / 2.0});
    cairo_stroke(cairo_);
    return;
  }
  cairo_matrix_t letters;
  cairo_matrix_init(&letters, (end.x - begin.x) / shaped.width, (end.y - begin.y) / shaped.width,
                    top.x - begin.x, top.y - begin.y, begin.x, begin.y);
  cairo_save(cairo_);
  cairo_set_matrix(cairo_, &letters);
  cairo_move_to(cairo_, 0.0, 0.0);
  cairo_show_text(cairo_, shaped.utf8.c_str());
  cairo_restore(cairo_);
  cairo_new_path(cairo_);
}

void CairoRenderer::SetStyle(const EntityProperties& properties, const Placement& placement) {
  const std::uint32_t number = properties.layer == 0 ? placement.layer : properties.layer;
  const Layer& layer = drawing_.layers[number];
  if (properties.color == kColorByLayer && properties.trueColor == kNoTrueColor) {
    SetColor(layer.color, layer.trueColor);
  } else {
    SetColor(properties.color, properties.trueColor);
  }
  SetWidth(properties.lineWeight == kDefaultLineWeight ? layer.lineWeight : properties.lineWeight);
  const bool isByLayer = properties.lineType == LineType::kByLayer;
  SetDashes((isByLayer ? layer.lineType : properties.lineType) == LineType::kDashed);
}

void CairoRenderer::SetColor(int color, std::int32_t trueColor) {
  if (color == color_ && trueColor == trueColor_) {
    return;
  }
  color_ = color;
  trueColor_ = trueColor;
  if (trueColor == kNoTrueColor) {
    const DisplayColor shown = displayColor(color);
    cairo_set_source_rgb(cairo_, shown.red, shown.green, shown.blue);
    return;
  }
  constexpr double kMost = 255.0;
  cairo_set_source_rgb(cairo_, (trueColor >> 16 & 0xFF) / kMost, (trueColor >> 8 & 0xFF) / kMost,
                       (trueColor & 0xFF) / kMost);
}

void CairoRenderer::SetWidth(std::int16_t weight) {
  constexpr double kHundredth = 0.01;
  double width = kLineWidth;
  if (fit_.millimeter > 0.0) {
    const double millimeters = weight > 0 ? weight * kHundredth : kUsualMillimeters;
    width = millimeters * fit_.millimeter;
  }
  if (width != width_) {
    width_ = width;
    cairo_set_line_width(cairo_, width);
  }
}

void CairoRenderer::SetDashes(bool isDashed) {
  // Shorter dashes cannot be told from a line.
  const double dash = drawing_.dashLength * fit_.scale;
  constexpr double kLeastMillimeters = 0.2;
  const double least = std::max(2.0 * fit_.resolution, kLeastMillimeters * fit_.millimeter);
  const bool isShown = isDashed && dash > least;
  if (isShown == isDashed_) {
    return;
  }
  isDashed_ = isShown;
  const double pattern[] = {dash, dash / 2.0};
  cairo_set_dash(cairo_, pattern, isShown ? 2 : 0, 0.0);
  // Round ends would fill the gaps of wide lines.
  cairo_set_line_cap(cairo_, isShown ? CAIRO_LINE_CAP_BUTT : CAIRO_LINE_CAP_ROUND);
}

void CairoRenderer::MoveTo(PlanPoint page) {
  cairo_move_to(cairo_, page.x, page.y);
  last_ = page;
  pathLength_ = 0;
  isSplit_ = false;
}

void CairoRenderer::LineTo(PlanPoint page) {
  // Pixels; finer steps than this cannot be seen and make pictures large and slow.
  constexpr double kLeastStep = 0.25;
  const double least = kLeastStep * fit_.resolution;
  if (std::abs(page.x - last_.x) < least && std::abs(page.y - last_.y) < least) {
    return;
  }
  LineToLast(page);
}

void CairoRenderer::LineToLast(PlanPoint page) {
  // The cost of a stroke grows faster than its length.
  constexpr int kMaxPathLength = 500;
  // Dashes would begin anew.
  if (pathLength_ >= kMaxPathLength && !isDashed_) {
    cairo_stroke(cairo_);
    MoveTo(last_);
    isSplit_ = true;
  }
  cairo_line_to(cairo_, page.x, page.y);
  last_ = page;
  ++pathLength_;
}

}  // namespace dxf2d
