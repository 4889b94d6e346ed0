#include "app/model/plan_scene.h"

#include <assimp/scene.h>

#include <cmath>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/cli/translation.h"
#include "app/model/label_layout.h"
#include "app/model/linework_scene.h"
#include "app/model/model_error.h"
#include "app/model/model_objects.h"
#include "app/model/object_label.h"
#include "app/model/object_mesh.h"
#include "app/model/plan_block.h"
#include "app/model/plan_label.h"
#include "app/model/plan_layout.h"
#include "app/model/storey.h"
#include "app/process/worker_program.h"

namespace dxf2d {
namespace {

// What becomes of a block's objects.
enum class Visibility {
  // It has neither faces nor lines.
  kEmpty,
  // Nothing of it shows: its objects are left out, since instances would insert a block that is not
  // there.
  kUnseen,
  // Nothing of it shows as it is given; its only object stays, without a label.
  kUnseenAlone,
  // Something shows, or nobody asked.
  kShown,
};

Visibility visibilityOf(const BlockPlan& plan, const PlanBlock& block, bool wantsLabels) {
  if (!block.hasContent) {
    return Visibility::kEmpty;
  }
  if (block.shows) {
    return *block.shows ? Visibility::kShown : Visibility::kUnseen;
  }
  if ((plan.users == 1 && !wantsLabels) || showsInPlan(block.parts)) {
    return Visibility::kShown;
  }
  return plan.users == 1 ? Visibility::kUnseenAlone : Visibility::kUnseen;
}

// Looks through all meshes, so that a broken one is refused whatever is drawn of it, and counts
// what a plan cannot show.
void countSkipped(const std::vector<ModelObject>& objects, std::size_t meshCount,
                  BlockBuilder& builder, PlanContent& content) {
  std::vector<bool> counted(meshCount);
  for (const ModelObject& object : objects) {
    for (const unsigned mesh : object.meshes) {
      const MeshContent& found = builder.ContentOf(mesh);
      if (!counted[mesh]) {
        content.points += found.points;
        content.degenerateFaces += found.degenerate;
        counted[mesh] = true;
      }
    }
  }
}

struct BuiltBlock {
  PlanBlock block;
  Visibility visibility;
  // Empty until its first object is added.
  std::u16string graphicName;
};

std::vector<BuiltBlock> buildBlocks(const std::vector<ModelObject>& objects,
                                    const PlanLayout& layout, bool wantsLabels,
                                    BlockBuilder& builder, PlanContent& content) {
  std::vector<BuiltBlock> blocks;
  blocks.reserve(layout.blocks.size());
  for (const BlockPlan& plan : layout.blocks) {
    PlanBlock block = builder.Build(objects[plan.firstObject].meshes, plan.residual, plan.anyTurn);
    const Visibility visibility = visibilityOf(plan, block, wantsLabels);
    content.emptyObjects += visibility == Visibility::kEmpty ? plan.users : 0;
    content.unseenObjects += visibility == Visibility::kUnseen ? plan.users : 0;
    blocks.push_back({std::move(block), visibility, {}});
  }
  return blocks;
}

KtSceneNode makeObjectNode(const std::u16string& name, const PlanPlacement& placement,
                           const BuiltBlock& built) {
  KtSceneNode node;
  node.objectId = name;
  node.realObjectId = name;
  node.graphicName = built.graphicName;
  node.matrix = placement.Matrix();
  node.children.reserve(built.block.parts.size());
  for (const PlanPart& part : built.block.parts) {
    KtSceneNode& leaf = node.children.emplace_back();
    leaf.color = part.color;
    leaf.geometry.push_back(part.geometry);
  }
  return node;
}

// `isFirst` tells an object that its block is drawn for from one that only inserts it.
NodeSource sourceOf(const ModelObject& object, const PlanBlock& block, bool isFirst,
                    const SourceFinder& finder) {
  NodeSource source = finder.SourceOf(*object.node);
  for (std::size_t i = 0; isFirst && i < block.parts.size(); ++i) {
    source.leaves.push_back(finder.LeafOf(block.parts[i].mesh, block.parts[i].kind));
  }
  return source;
}

// Adds the objects to the scene. Returns those of which something shows.
std::vector<ShownObject> addObjects(const std::vector<ModelObject>& objects,
                                    const PlanLayout& layout, const PlanOptions& options,
                                    const SourceFinder& finder, BlockBuilder& builder,
                                    ObjectNames& names, PlanScene& plan) {
  const bool wantsLabels = options.labels != PlanLabels::kNone;
  std::vector<BuiltBlock> blocks = buildBlocks(objects, layout, wantsLabels, builder, plan.content);
  plan.content.meshWork = builder.Work();
  std::vector<ShownObject> shown;
  plan.scene.nodes.reserve(objects.size());
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const PlacedObject& placed = layout.objects[i];
    BuiltBlock& built = blocks[placed.block];
    if (built.visibility == Visibility::kEmpty || built.visibility == Visibility::kUnseen) {
      continue;
    }
    const std::u16string name = names.Unique(objects[i].name);
    const bool isFirst = built.graphicName.empty();
    if (options.wantsSources) {
      plan.sources.push_back(sourceOf(objects[i], built.block, isFirst, finder));
    }
    if (isFirst) {
      built.graphicName = name;
      plan.content.parts += built.block.parts.size();
    } else {
      ++plan.content.instances;
    }
    plan.scene.nodes.push_back(makeObjectNode(name, placed.placement, built));
    ++plan.content.objects;
    PlanExtent extent;
    addPlaced(built.block.hull, placed.placement, extent);
    plan.content.extent.Add(extent);
    if (built.visibility == Visibility::kShown) {
      shown.push_back({i, extent});
    }
  }
  return shown;
}

// The labels of the objects, each with the extent of all objects that it names.
struct PlanLabelRequests {
  std::vector<std::u16string> texts;
  // That are named.
  std::vector<const aiNode*> nodes;
  std::vector<LabelRequest> requests;
};

PlanLabelRequests requestLabels(const aiScene& model, const std::vector<ModelObject>& objects,
                                const std::vector<ShownObject>& shown) {
  PlanLabelRequests labels;
  LabelFinder finder(model);
  std::unordered_map<const aiNode*, std::size_t> numbers;
  for (const auto& [object, extent] : shown) {
    const std::array<double, 2> center = extent.Center();
    ObjectLabel label = finder.LabelOf(objects[object]);
    // A turn may bring coordinates near the end of the range beyond it.
    if (label.node == nullptr || !std::isfinite(center[0]) || !std::isfinite(center[1])) {
      continue;
    }
    const auto [number, isNew] = numbers.emplace(label.node, labels.requests.size());
    if (isNew) {
      labels.requests.push_back({extent, labelWidth(label.text)});
      labels.texts.push_back(std::move(label.text));
      labels.nodes.push_back(label.node);
    } else {
      labels.requests[number->second].extent.Add(extent);
    }
  }
  return labels;
}

// After all objects, whose names and numbers are thus the same as without labels.
void addLabels(const PlanLabelRequests& labels, const PlanOptions& options,
               const SourceFinder& finder, ObjectNames& names, PlanScene& plan) {
  const double height = options.labelHeight.value_or(labelHeightFor(plan.content.extent));
  const LineRaster lines(plan.scene, plan.content.extent, kLineCellShare * height);
  const std::vector<LabelPlace> places = placeLabels(labels.requests, height, lines);
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!places[i].isPlaced) {
      ++plan.content.labelsLeftOut;
      continue;
    }
    plan.scene.nodes.push_back(
        makeLabelNode({labels.texts[i], places[i].center, places[i].height, places[i].isUpright},
                      options.labelColor, names.Unique("label")));
    if (options.wantsSources) {
      NodeSource& source = plan.sources.emplace_back(finder.SourceOf(*labels.nodes[i]));
      source.leaves.push_back({{}, kNoTrueColor, PartKind::kLabel});
    }
    ++plan.content.labels;
  }
}

// Drawing units for one unit of the model.
double scaleOf(const ModelSource& source, const PlanOptions& options, PlanContent& content) {
  content.modelUnit = source.unit;
  if (!source.unit.IsKnown() && options.sourceUnits) {
    content.modelUnit = *options.sourceUnits;
  }
  content.drawingUnit = options.units.value_or(content.modelUnit);
  if (!options.units) {
    return options.scale;
  }
  if (!content.modelUnit.IsKnown()) {
    throw UsageError({source.path,
                      tr("--units needs the model's own unit, which this file does not state"),
                      tr("give it with --source-units")});
  }
  return content.modelUnit.meters / content.drawingUnit.meters * options.scale;
}

// Where a storey is cut; `scale` are drawing units for one unit of the model.
CutPlane cutOf(const Storey& storey, const ModelSource& source, double scale,
               const PlanContent& content) {
  if (!content.modelUnit.IsKnown()) {
    throw UsageError({source.path,
                      tr("--storey needs the model's own unit, which this file does not state"),
                      tr("give it with --source-units")});
  }
  return {storey.floor + kStoreyCutMeters / content.modelUnit.meters * scale, true, {}};
}

// The map from the model, without its source's origin, to the drawing.
Affine sheetOf(const aiScene& model, const ModelSource& source, const PlanOptions& options,
               double scale) {
  Affine sheet = compose(uprightTurn(model, source, options.up), options.view);
  for (double& element : sheet.linear) {
    element *= scale;
  }
  return sheet;
}

// Where the source's origin is in the drawing.
std::array<double, 3> originOn(const Affine& sheet, const ModelSource& source) {
  const Affine origin{Affine{}.linear, source.origin};
  return compose(origin, {sheet.linear, {}}).shift;
}

// Moves a plan. What is seen of a model is found near its own origin, for far from it coordinates
// have too few digits for that.
void moveBy(double x, double y, PlanScene& plan) {
  if (x == 0.0 && y == 0.0) {
    return;
  }
  for (KtSceneNode& node : plan.scene.nodes) {
    const double* const m = node.matrix.Data();
    node.matrix.SetTranslation(m[12] + x, m[13] + y, m[14]);
  }
  PlanExtent& extent = plan.content.extent;
  extent = {extent.minX + x, extent.minY + y, extent.maxX + x, extent.maxY + y};
}

std::string emptinessOf(const PlanContent& content, const PlanOptions& options) {
  if (content.unseenObjects != 0 && (options.linework.cut || !options.storey.empty())) {
    return tr("nothing of it shows below the cut");
  }
  if (content.unseenObjects != 0) {
    return tr("no edge of it shows in this view");
  }
  if (content.points != 0) {
    return tr("it holds points, which a plan does not show");
  }
  if (content.emptyObjects != 0) {
    return tr("its meshes have no faces and no lines");
  }
  return tr("no node of it carries a mesh");
}

}  // namespace

PlanScene makePlanScene(const aiScene& model, const ModelSource& source,
                        const PlanOptions& options) {
  ObjectNames names;
  PlanScene plan = makeViewScene(model, source, options, names);
  requireObjects(plan.content, source, options);
  const double scale = scaleOf(source, options, plan.content);
  const std::array<double, 3> origin = originOn(sheetOf(model, source, options, scale), source);
  moveBy(origin[0], origin[1], plan);
  return plan;
}

void requireObjects(const PlanContent& content, const ModelSource& source,
                    const PlanOptions& options) {
  const bool isAnyChosen = content.emptyObjects + content.unseenObjects + content.points != 0;
  if (content.objects == 0 && !options.filter.IsEmpty() && !isAnyChosen) {
    throw ModelError(kExitNothingToDraw,
                     {source.path, tr("nothing to draw: --only and --exclude leave no object"),
                      tr("choose other patterns")});
  }
  if (content.objects == 0) {
    throw ModelError(kExitNothingToDraw,
                     {source.path, tr("nothing to draw: %1", {emptinessOf(content, options)}),
                      tr("choose a model with faces or lines")});
  }
}

namespace {

// With what the source asks for: the edges that a model states stand in for creases.
PlanOptions withTrueEdges(PlanOptions options, const ModelSource& source) {
  if (source.hasTrueEdges) {
    options.trueEdges =
        options.creaseDegrees < mesh::kNoCreases ? TrueEdges::kDrawn : TrueEdges::kLeftOut;
    options.creaseDegrees = mesh::kNoCreases;
  }
  return options;
}

}  // namespace

PlanScene makeViewScene(const aiScene& model, const ModelSource& source, const PlanOptions& asked,
                        ObjectNames& names) {
  const PlanOptions options = withTrueEdges(asked, source);
  PlanScene plan;
  const double scale = scaleOf(source, options, plan.content);
  Affine sheet = sheetOf(model, source, options, scale);
  // Cuts are at heights of the model.
  sheet.shift[2] += originOn(sheet, source)[2];
  const bool wantsLabels = options.labels != PlanLabels::kNone;
  LimitChecker limits(options.limits, source.path);
  BlockBuilder builder(model, source, options, limits);

  std::vector<ModelObject> objects =
      collectObjects(model, sheet, options.filter, source.path, limits);
  LineworkOptions linework = options.linework;
  if (!options.storey.empty()) {
    const Storey storey = findStorey(model, sheet, options.storey, source.path);
    keepObjectsBelow(*storey.node, objects);
    linework.cut = cutOf(storey, source, scale, plan.content);
  }
  countSkipped(objects, model.mNumMeshes, builder, plan.content);
  PlanLayout layout = layOutObjects(objects);
  if (!isDrawnAsGiven(options)) {
    for (PlacedObject& placed : layout.objects) {
      placed.placement.shift[0] = zeroOrShown(placed.placement.shift[0]);
      placed.placement.shift[1] = zeroOrShown(placed.placement.shift[1]);
    }
  }
  const SourceFinder finder(model, options.colors);
  beginStage("repairing");
  const std::vector<ShownObject> shown =
      linework.IsByObject()
          ? addObjects(objects, layout, options, finder, builder, names, plan)
          : addLinework({objects, layout, options, linework, finder}, builder, limits, names, plan);
  requireUnchanged(source);
  if (wantsLabels && plan.content.objects != 0) {
    addLabels(requestLabels(model, objects, shown), options, finder, names, plan);
  }
  return plan;
}

}  // namespace dxf2d
