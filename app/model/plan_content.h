// The scene that becomes of a model, and what is known of it.
#pragma once

#include <cstddef>
#include <vector>

#include "app/model/length_unit.h"
#include "app/model/plan_block.h"
#include "app/model/plan_extent.h"
#include "app/model/plan_source.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// What a plan scene holds, and what of the model it leaves out.
struct PlanContent {
  // Of a sheet; 0 for a plan of one view.
  std::size_t views = 0;
  std::size_t objects = 0;
  // Objects beyond the first of each block that several share.
  std::size_t instances = 0;
  // Objects that have blocks of their own although another has the same geometry, since what shows
  // of the two differs.
  std::size_t unshared = 0;
  // Leaves with geometry of their own, those of instances not counted again.
  std::size_t parts = 0;
  std::size_t labels = 0;
  // Objects and groups whose labels found no place.
  std::size_t labelsLeftOut = 0;
  // Of the outlines; labels may reach beyond it, and so may the names of views.
  PlanExtent extent;

  std::size_t points = 0;
  std::size_t degenerateFaces = 0;
  // Objects that have neither faces nor lines.
  std::size_t emptyObjects = 0;
  // Objects that are left out because nothing of them shows in plan.
  std::size_t unseenObjects = 0;

  // See Linework.
  std::size_t openEnds = 0;
  std::size_t openObjects = 0;
  std::size_t droppedPieces = 0;

  // Of the dashes that hidden lines are to have which were left whole, in drawing units; 0 where
  // there are none.
  double dashLength = 0.0;

  MeshWork meshWork;
  // Of the model's coordinates, and of the drawing before it is scaled; unknown if not stated.
  LengthUnit modelUnit;
  LengthUnit drawingUnit;
};

struct PlanScene {
  KtScene scene;
  PlanContent content;
  // Of each of scene.nodes, if wanted.
  std::vector<NodeSource> sources;
};

}  // namespace dxf2d
