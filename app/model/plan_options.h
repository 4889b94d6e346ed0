// What the user says about the drawing of a model.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/model/affine.h"
#include "app/model/length_unit.h"
#include "app/model/linework_options.h"
#include "app/model/model_limits.h"
#include "app/model/object_choice.h"
#include "app/model/part_color.h"
#include "app/model/plan_label.h"
#include "app/model/up_axis.h"
#include "mesh/edge_kinds.h"
#include "mesh/repair.h"
#include "platform/parallel.h"

namespace dxf2d {

enum class PlanLabels { kNone, kName };

// What becomes of lines that are the edges of faces.
enum class TrueEdges : std::uint8_t {
  // There are none: lines are lines.
  kNone,
  // Drawn in place of creases, but where another edge is drawn already.
  kDrawn,
  kLeftOut,
};

struct PlanOptions {
  UpAxis up = UpAxis::kAuto;
  // z up before it, z towards the viewer after it (see parseView).
  Affine view;

  // The unit of the drawing; none: the model's own.
  std::optional<LengthUnit> units;
  // The unit of models whose files state none.
  std::optional<LengthUnit> sourceUnits;
  // Drawing units for one unit of the model, once `units` has converted it; finite and above 0.
  double scale = 1.0;

  ObjectFilter filter;
  // False: faces are drawn as the model has them.
  bool repair = true;
  // See mesh::RepairOptions.
  std::optional<double> weldShare;
  // Edges at which the surface bends by more degrees than this show; kNoCreases: none.
  double creaseDegrees = mesh::kDefaultCreaseDegrees;

  // Of the model (ModelSource::hasTrueEdges); not what the user says.
  TrueEdges trueEdges = TrueEdges::kNone;

  LineworkOptions linework;
  // Draws only this storey (findStorey), cut kStoreyCutMeters above its floor, seen from above.
  // Empty: everything.
  std::string storey;

  PlanColors colors = PlanColors::kDark;
  PlanLabels labels = PlanLabels::kNone;
  // Of the labels' letters, kMinLabelHeight to kMaxLabelHeight; none: labelHeightFor the plan.
  std::optional<double> labelHeight;
  // 1 to 255.
  int labelColor = kDefaultLabelColor;

  // Whether PlanScene::sources is filled.
  bool wantsSources = false;
  // Whether creases are leaves apart from the other lines of their part.
  bool splitsKinds = false;

  ModelLimits limits;
  // Of what is done to one object, or to all together.
  Threading threading;
};

// Whether faces are drawn exactly as the model has them.
inline bool isDrawnAsGiven(const PlanOptions& options) {
  return !options.repair && !options.splitsKinds && options.creaseDegrees >= mesh::kNoCreases &&
         options.trueEdges != TrueEdges::kDrawn;
}

}  // namespace dxf2d
