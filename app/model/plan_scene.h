// From a model's nodes to a scene whose plan the plug-in draws.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "app/model/model_limits.h"
#include "app/model/plan_extent.h"
#include "app/model/up_axis.h"
#include "ktscene/kt_scene.h"

struct aiScene;

enum class PlanLabels { kNone, kName };

// How a model is laid on the sheet. Units are the model's own.
struct PlanOptions {
  UpAxis up = UpAxis::kAuto;
  // z up before it, z towards the viewer after it (see parseView).
  Affine view;
  // Finite and above 0.
  double scale = 1.0;
  PlanLabels labels = PlanLabels::kNone;
  // Of the labels' letters, kMinLabelHeight to kMaxLabelHeight; none: labelHeightFor the plan.
  std::optional<double> labelHeight;
  ModelLimits limits;
};

// What a plan scene holds, and what of the model it leaves out.
struct PlanContent {
  std::size_t objects = 0;
  // Objects beyond the first of each block that several share.
  std::size_t instances = 0;
  // Leaves with geometry of their own, those of instances not counted again.
  std::size_t parts = 0;
  std::size_t labels = 0;
  // Of the outlines; labels may reach beyond it.
  PlanExtent extent;

  std::size_t points = 0;
  std::size_t degenerateFaces = 0;
  // Objects that have neither faces nor lines.
  std::size_t emptyObjects = 0;
  // Objects that share a block of which nothing shows in plan.
  std::size_t unseenObjects = 0;
};

struct PlanScene {
  KtScene scene;
  PlanContent content;
};

// Every node of the model that carries meshes becomes an object: a node directly under the scene
// with the names of an object and the plan part of its world transform, a shift and a turn about z.
// Below it stands one leaf without names for the polygons and one for the lines of each mesh, in
// the material's colour; the rest of the transform is in their coordinates. Objects whose meshes
// and rests agree have one graphic name and one geometry, and only those. Animations and bones are
// left at rest.
//
// With PlanLabels::kName, each object of which something shows has a label after all objects,
// directly under the scene, in the middle of the object's extent: the name of its node, or else of
// its first mesh that has one, or else "unnamed". Objects are the same with labels and without.
//
// `importer` is the reader's name (Model::importerName), `path` stands for the model in messages.
// Throws ModelError when a mesh has a vertex that is not finite or a face that names no vertex,
// when a transform is not finite, when there is nothing to draw, or more than the limits allow.
PlanScene makePlanScene(const aiScene& model, const std::string& importer, const std::string& path,
                        const PlanOptions& options);
