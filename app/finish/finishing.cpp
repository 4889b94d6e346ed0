#include "app/finish/finishing.h"

#include <utility>
#include <variant>
#include <vector>

#include "app/finish/drawing_pruning.h"
#include "app/finish/explosion.h"
#include "app/finish/layer_assignment.h"
#include "app/finish/layer_colors.h"
#include "app/finish/object_joining.h"
#include "app/finish/text_recoding.h"

namespace dxf2d::finish {

namespace {

// Multiplies all lengths. A factor below 1 divides by its inverse, which is the whole number of
// units in a larger one: 2.5 mm are 0.0025 m, and not what 2.5 times the double near 0.001 is.
class Scaling {
 public:
  explicit Scaling(double factor) : factor_(factor) {}

  void Apply(std::vector<DrawingEntity>& entities) const {
    for (DrawingEntity& entity : entities) {
      std::visit([this](auto& shape) { Scale(shape); }, entity);
    }
  }
  void Apply(PlanPoint& point) const { point = {Of(point.x), Of(point.y)}; }
  double Of(double value) const {
    return factor_ < 1.0 ? value / (1.0 / factor_) : value * factor_;
  }

 private:
  void Scale(LineEntity& line) const {
    Apply(line.start);
    Apply(line.end);
  }
  void Scale(PolylineEntity& polyline) const {
    for (PlanPoint& vertex : polyline.vertices) {
      Apply(vertex);
    }
  }
  void Scale(FaceEntity& face) const {
    for (PlanPoint& corner : face.corners) {
      Apply(corner);
    }
  }
  void Scale(CircleEntity& circle) const {
    Apply(circle.center);
    circle.radius = Of(circle.radius);
  }
  void Scale(TextEntity& text) const {
    Apply(text.at);
    text.height = Of(text.height);
  }
  void Scale(InsertEntity& insert) const { Apply(insert.at); }

  double factor_;
};

void scaleDrawing(Drawing& drawing, double factor) {
  const Scaling scaling(factor);
  scaling.Apply(drawing.entities);
  for (DrawingBlock& block : drawing.blocks) {
    scaling.Apply(block.base);
    scaling.Apply(block.entities);
  }
  drawing.dashLength = scaling.Of(drawing.dashLength);
}

void joinDrawing(Drawing& drawing, double simplifyTolerance, Summary& summary) {
  joinEntities(drawing.entities, simplifyTolerance, summary);
  for (DrawingBlock& block : drawing.blocks) {
    joinEntities(block.entities, simplifyTolerance, summary);
  }
}

}  // namespace

FinishedDrawing finishDrawing(Drawing drawing, const SideTable& sources, const Options& options) {
  Summary summary;
  summary.pruned = pruneDrawing(drawing);
  assignLayers(drawing, sources, options.layers);
  if (options.explode) {
    explodeBlocks(drawing);
  }
  if (options.scale != 1.0) {
    scaleDrawing(drawing, options.scale);
  }
  summary.outOfRange = dropOutOfRange(drawing);
  if (options.release != Release::kR2004) {
    dropTrueColors(drawing);
  }
  agreeWithLayers(drawing);
  recodeTexts(drawing, options.codePage);
  if (options.join) {
    joinDrawing(drawing, options.simplifyTolerance, summary);
    // Most of what shows may be of another color now.
    agreeWithLayers(drawing);
  }
  drawing.release = options.release;
  drawing.units = options.units.value_or(drawing.units);
  drawing.dashLength = options.dashLength.value_or(drawing.dashLength);
  return {std::move(drawing), summary};
}

}  // namespace dxf2d::finish
