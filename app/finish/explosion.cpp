#include "app/finish/explosion.h"

#include <cmath>
#include <numbers>
#include <utility>
#include <variant>
#include <vector>

#include "app/drawing/drawing_nesting.h"

namespace dxf2d::finish {

namespace {

double rounded(double value) {
  constexpr double kDecimals = 1e6;
  // Beyond this a double has no sixth decimal.
  constexpr double kMost = 1e9;
  return std::abs(value) < kMost ? std::round(value * kDecimals) / kDecimals : value;
}

// An entity where it is shown.
class PlacedEntity {
 public:
  explicit PlacedEntity(const Placement& placement) : placement_(placement) {}

  DrawingEntity operator()(LineEntity line) const {
    line.start = At(line.start);
    line.end = At(line.end);
    return line;
  }
  DrawingEntity operator()(PolylineEntity polyline) const {
    for (PlanPoint& vertex : polyline.vertices) {
      vertex = At(vertex);
    }
    return polyline;
  }
  DrawingEntity operator()(FaceEntity face) const {
    for (PlanPoint& corner : face.corners) {
      corner = At(corner);
    }
    return face;
  }
  DrawingEntity operator()(CircleEntity circle) const {
    circle.center = At(circle.center);
    return circle;
  }
  DrawingEntity operator()(TextEntity text) const {
    text.at = At(text.at);
    const double turn = std::atan2(placement_.sine, placement_.cosine) * 180.0 / std::numbers::pi;
    if (turn != 0.0) {
      text.rotation = rounded(std::remainder(text.rotation + turn, 360.0));
    }
    return text;
  }
  DrawingEntity operator()(InsertEntity insert) const { return insert; }

 private:
  PlanPoint At(PlanPoint point) const {
    const PlanPoint placed = placement_.Apply(point);
    return {rounded(placed.x), rounded(placed.y)};
  }

  const Placement& placement_;
};

}  // namespace

void explodeBlocks(Drawing& drawing) {
  std::vector<DrawingEntity> entities;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    entities.push_back(std::visit(PlacedEntity(placement), entity));
    std::visit(
        [&](EntityProperties& properties) {
          properties.layer = properties.layer != 0 ? properties.layer : placement.layer;
        },
        entities.back());
  });
  drawing.entities = std::move(entities);
  drawing.blocks.clear();
  drawing.blockNumbers.clear();
}

}  // namespace dxf2d::finish
