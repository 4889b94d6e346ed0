#include "app/preview/placed_extents.h"

namespace dxf2d {

namespace {

struct ExtentsOf {
  const Placement& placement;
  TextShaper& texts;
  PlanExtents extents{};

  void Add(PlanPoint point) { extents.Add(placement.Apply(point)); }

  void operator()(const LineEntity& line) {
    Add(line.start);
    Add(line.end);
  }
  void operator()(const PolylineEntity& polyline) {
    for (const PlanPoint vertex : polyline.vertices) {
      Add(vertex);
    }
  }
  void operator()(const FaceEntity& face) {
    for (const PlanPoint corner : face.corners) {
      Add(corner);
    }
  }
  void operator()(const CircleEntity& circle) {
    const PlanPoint center = placement.Apply(circle.center);
    extents.Add({center.x - circle.radius, center.y - circle.radius});
    extents.Add({center.x + circle.radius, center.y + circle.radius});
  }
  void operator()(const TextEntity& text) {
    if (!texts.IsVisible(text)) {
      return;
    }
    const ShapedText& shaped = texts.Shape(text);
    const TextFrame frame(text);
    const PlanPoint start = baselineStart(text, shaped, texts.Descent());
    for (const double x : {start.x, start.x + shaped.width}) {
      Add(frame.Apply({x, start.y - texts.Descent()}));
      Add(frame.Apply({x, start.y + texts.Ascent()}));
    }
  }
  void operator()(const InsertEntity&) {}
};

}  // namespace

PlanExtents placedExtents(const DrawingEntity& entity, const Placement& placement,
                          TextShaper& texts) {
  ExtentsOf extentsOf{placement, texts};
  std::visit(extentsOf, entity);
  return extentsOf.extents;
}

TextFrame::TextFrame(const TextEntity& text)
    : turn_(Placement{}.Insert({{}, 0, {}, text.rotation}, {})),
      at_(text.at),
      height_(text.height),
      advance_(text.height * text.widthFactor) {}

}  // namespace dxf2d
