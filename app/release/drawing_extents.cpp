#include "app/release/drawing_extents.h"

#include <variant>

#include "app/drawing/drawing_nesting.h"

namespace dxf2d::release {

namespace {

struct Addition {
  const Placement& placement;
  PlanExtents& extents;

  void Add(PlanPoint point) const { extents.Add(placement.Apply(point)); }

  void operator()(const LineEntity& line) const {
    Add(line.start);
    Add(line.end);
  }
  void operator()(const PolylineEntity& polyline) const {
    for (const PlanPoint vertex : polyline.vertices) {
      Add(vertex);
    }
  }
  void operator()(const FaceEntity& face) const {
    for (const PlanPoint corner : face.corners) {
      Add(corner);
    }
  }
  void operator()(const CircleEntity& circle) const {
    const PlanPoint center = placement.Apply(circle.center);
    extents.Add({center.x - circle.radius, center.y - circle.radius});
    extents.Add({center.x + circle.radius, center.y + circle.radius});
  }
  void operator()(const TextEntity& text) const { Add(text.at); }
  void operator()(const InsertEntity&) const {}
};

}  // namespace

PlanExtents drawingExtents(const Drawing& drawing) {
  PlanExtents extents;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    std::visit(Addition{placement, extents}, entity);
  });
  return extents;
}

}  // namespace dxf2d::release
