#include "app/preview/page_pen.h"

#include <cmath>

#include "app/preview/display_palette.h"
#include "app/preview/placed_extents.h"

namespace {

// In pixels or points of the page.
constexpr double kLineWidth = 1.5;

// Letters lower or narrower than this, in page units, are a line.
constexpr double kLeastLetter = 0.75;

}  // namespace

PagePen::PagePen(cairo_t* cairo, const PageFit& fit, TextShaper& texts)
    : cairo_(cairo), fit_(fit), texts_(texts) {
  cairo_set_line_width(cairo_, kLineWidth);
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

void PagePen::Draw(const DrawingEntity& entity, const Placement& placement) {
  struct Dispatch {
    PagePen& pen;
    const Placement& placement;

    void operator()(const LineEntity& line) const {
      pen.SetColor(line.color);
      const PlanPoint ends[] = {line.start, line.end};
      pen.DrawLines(ends, false, placement);
    }
    void operator()(const PolylineEntity& polyline) const {
      pen.SetColor(polyline.color);
      pen.DrawLines(polyline.vertices, polyline.closed, placement);
    }
    void operator()(const FaceEntity& face) const {
      pen.SetColor(face.color);
      pen.DrawLines(face.corners, true, placement);
    }
    void operator()(const CircleEntity& circle) const {
      pen.SetColor(circle.color);
      pen.DrawCircle(circle, placement);
    }
    void operator()(const TextEntity& text) const {
      if (!pen.texts_.IsVisible(text)) return;
      pen.SetColor(text.color);
      pen.DrawText(text, placement);
    }
    void operator()(const InsertEntity&) const {}
  };
  std::visit(Dispatch{*this, placement}, entity);
}

void PagePen::DrawLines(std::span<const PlanPoint> points, bool closed,
                        const Placement& placement) {
  if (points.empty()) return;
  const auto onPage = [&](PlanPoint point) { return fit_.Apply(placement.Apply(point)); };
  MoveTo(onPage(points.front()));
  for (const PlanPoint point : points) LineTo(onPage(point));
  LineToLast(onPage(closed ? points.front() : points.back()));
  cairo_stroke(cairo_);
}

void PagePen::DrawCircle(const CircleEntity& circle, const Placement& placement) {
  const PlanPoint center = fit_.Apply(placement.Apply(circle.center));
  const double radius = circle.radius * fit_.scale;
  // A radius that is next to nothing has no arc to speak of.
  constexpr double kLeastRadius = 0.1;
  if (radius < kLeastRadius) {
    MoveTo(center);
    LineToLast(center);
  } else {
    cairo_new_sub_path(cairo_);
    cairo_arc(cairo_, center.x, center.y, radius, 0.0, 6.283185307179586);
    cairo_close_path(cairo_);
  }
  cairo_stroke(cairo_);
}

void PagePen::DrawText(const TextEntity& text, const Placement& placement) {
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
  if (height < kLeastLetter || length < kLeastLetter) {
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

void PagePen::SetColor(int color) {
  if (color == color_) return;
  color_ = color;
  const DisplayColor shown = displayColor(color);
  cairo_set_source_rgb(cairo_, shown.red, shown.green, shown.blue);
}

void PagePen::MoveTo(PlanPoint page) {
  cairo_move_to(cairo_, page.x, page.y);
  last_ = page;
  pathLength_ = 0;
}

void PagePen::LineTo(PlanPoint page) {
  // Page units; finer steps than this cannot be seen and make pictures large and slow.
  constexpr double kLeastStep = 0.25;
  if (std::abs(page.x - last_.x) < kLeastStep && std::abs(page.y - last_.y) < kLeastStep) return;
  LineToLast(page);
}

void PagePen::LineToLast(PlanPoint page) {
  // The cost of a stroke grows faster than its length.
  constexpr int kMaxPathLength = 500;
  if (pathLength_ == kMaxPathLength) {
    cairo_stroke(cairo_);
    MoveTo(last_);
  }
  cairo_line_to(cairo_, page.x, page.y);
  last_ = page;
  ++pathLength_;
}
