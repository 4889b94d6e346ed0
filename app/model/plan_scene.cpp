#include "app/model/plan_scene.h"

#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "app/model/block_index.h"
#include "app/model/label_text.h"
#include "app/model/material_color.h"
#include "app/model/mesh_check.h"
#include "app/model/mesh_geometry.h"
#include "app/model/model_error.h"
#include "app/model/model_objects.h"
#include "app/model/object_names.h"
#include "app/model/plan_label.h"
#include "app/model/plan_placement.h"
#include "app/model/plan_visibility.h"

namespace {

// A leaf that objects of one block show.
struct Part {
  KtSceneGeometry geometry;
  std::optional<std::array<double, 3>> color;
};

// What objects with the same meshes and rest share.
struct Block {
  std::size_t users = 0;
  bool anyTurn = false;
  bool built = false;
  // False when nothing of a shared block shows; its objects are then left out, since each would
  // insert a block that is not there.
  bool placed = true;
  // False when it is known that nothing of it shows.
  bool shows = true;
  std::vector<Part> parts;
  PlanPoints reach;
  std::u16string graphicName;
};

struct PlacedObject {
  std::size_t block;
  PlanPlacement placement;
};

bool showsInPlan(const Part& part) {
  if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&part.geometry)) {
    return showsInPlan(**faces);
  }
  return showsInPlan(*std::get<std::shared_ptr<const KtLineSet>>(part.geometry));
}

// The name that a label shows.
std::u16string labelTextOf(const aiScene& model, const ModelObject& object) {
  std::u16string text = textOfName(object.name);
  for (const unsigned mesh : object.meshes) {
    if (!text.empty()) break;
    const aiString& name = model.mMeshes[mesh]->mName;
    text = textOfName({name.data, name.length});
  }
  return text.empty() ? u"unnamed" : text;
}

class PlanSceneBuilder {
 public:
  PlanSceneBuilder(const aiScene& model, const std::string& path, const PlanOptions& options,
                   ModelMeter& meter)
      : model_(model), path_(path), options_(options), meter_(meter), contents_(model.mNumMeshes) {}

  PlanScene Build(const std::vector<ModelObject>& objects) {
    CountWhatIsSkipped(objects);
    Place(objects);
    result_.scene.nodes.reserve(objects.size());
    for (std::size_t i = 0; i < objects.size(); ++i) AddObject(objects[i], placed_[i]);
    if (result_.content.objects == 0) {
      throw ModelError(kExitNothingToDraw, "nothing to draw in '" + path_ + "': " + Emptiness());
    }
    AddLabels();
    return std::move(result_);
  }

 private:
  const MeshContent& ContentOf(unsigned mesh) {
    std::optional<MeshContent>& content = contents_[mesh];
    if (!content) {
      std::string fault;
      content = checkMesh(*model_.mMeshes[mesh], fault);
      if (!fault.empty()) Fail(mesh, fault);
      result_.content.points += content->points;
      result_.content.degenerateFaces += content->degenerate;
    }
    return *content;
  }

  // All meshes are looked through first, so that a broken one is refused whatever is drawn of it.
  void CountWhatIsSkipped(const std::vector<ModelObject>& objects) {
    for (const ModelObject& object : objects) {
      for (const unsigned mesh : object.meshes) ContentOf(mesh);
    }
  }

  void Place(const std::vector<ModelObject>& objects) {
    placed_.reserve(objects.size());
    for (const ModelObject& object : objects) {
      const SplitTransform split = splitTransform(object.world);
      const std::size_t number = index_.FindOrAdd(object.meshes, split.rest);
      if (number == blocks_.size()) blocks_.emplace_back();
      ++blocks_[number].users;
      if (!split.placement.KeepsAxes()) blocks_[number].anyTurn = true;
      placed_.push_back({number, split.placement});
    }
  }

  void AddParts(unsigned mesh, std::size_t number, Block& block, ReachPoints& reach) {
    meter_.AddVertices(model_.mMeshes[mesh]->mNumVertices);
    MeshGeometry geometry;
    if (!makeMeshGeometry(*model_.mMeshes[mesh], ContentOf(mesh), index_.Rest(number), geometry)) {
      Fail(mesh, "a vertex leaves the range of numbers where its node places it");
    }
    std::optional<std::array<double, 3>> color;
    const unsigned material = model_.mMeshes[mesh]->mMaterialIndex;
    if (material < model_.mNumMaterials && model_.mMaterials[material] != nullptr) {
      color = materialColor(*model_.mMaterials[material]);
    }
    if (geometry.faces) {
      reach.Add(geometry.faces->coords, geometry.faces->indices);
      block.parts.push_back({std::move(geometry.faces), color});
    }
    if (geometry.lines) {
      reach.Add(geometry.lines->coords, geometry.lines->indices);
      block.parts.push_back({std::move(geometry.lines), color});
    }
  }

  void BuildBlock(const ModelObject& object, std::size_t number, Block& block) {
    block.built = true;
    ReachPoints reach(block.anyTurn);
    for (const unsigned mesh : object.meshes) AddParts(mesh, number, block, reach);
    block.reach = reach.Take();
    if (block.parts.empty()) {
      block.placed = false;
      result_.content.emptyObjects += block.users;
      return;
    }
    if (block.users > 1 || WantsLabels()) {
      block.shows = std::ranges::any_of(block.parts, [](const Part& p) { return showsInPlan(p); });
    }
    if (block.users > 1) block.placed = block.shows;
    if (!block.placed) result_.content.unseenObjects += block.users;
  }

  void AddObject(const ModelObject& object, const PlacedObject& placed) {
    Block& block = blocks_[placed.block];
    const bool first = !block.built;
    if (first) BuildBlock(object, placed.block, block);
    if (!block.placed) return;
    KtSceneNode node;
    node.objectId = names_.Unique(object.name);
    node.realObjectId = node.objectId;
    if (first) block.graphicName = node.objectId;
    node.graphicName = block.graphicName;
    node.matrix = placed.placement.Matrix();
    node.children.reserve(block.parts.size());
    for (const Part& part : block.parts) {
      KtSceneNode& leaf = node.children.emplace_back();
      leaf.color = part.color;
      leaf.geometry.push_back(part.geometry);
    }
    result_.scene.nodes.push_back(std::move(node));
    PlanExtent extent;
    addPlaced(block.reach, placed.placement, extent);
    result_.content.extent.Add(extent);
    if (WantsLabels() && block.shows) KeepLabel(object, block, extent);
    ++result_.content.objects;
    if (first) {
      result_.content.parts += block.parts.size();
    } else {
      ++result_.content.instances;
    }
  }

  bool WantsLabels() const { return options_.labels != PlanLabels::kNone; }

  void KeepLabel(const ModelObject& object, const Block& block, const PlanExtent& extent) {
    const std::array<double, 2> centre = extent.Centre();
    // A turn may bring coordinates near the end of the range beyond it.
    if (!std::isfinite(centre[0]) || !std::isfinite(centre[1])) return;
    labels_.push_back({labelTextOf(model_, object), centre, block.parts.front().color});
  }

  // After all objects, whose names and numbers are thus the same as without labels.
  void AddLabels() {
    const double height = options_.labelHeight.value_or(labelHeightFor(result_.content.extent));
    for (const PlanLabel& label : labels_) {
      result_.scene.nodes.push_back(makeLabelNode(label, height, names_.Unique("label")));
    }
    result_.content.labels = labels_.size();
  }

  std::string Emptiness() const {
    if (result_.content.unseenObjects != 0) return "no edge of it shows in this view";
    if (result_.content.points != 0) return "it holds points, which a plan does not show";
    if (result_.content.emptyObjects != 0) return "its meshes have no faces and no lines";
    return "no node of it carries a mesh";
  }

  [[noreturn]] void Fail(unsigned mesh, const std::string& reason) const {
    throw ModelError(kExitInput, "cannot draw '" + path_ + "': in mesh " + std::to_string(mesh) +
                                     " '" + model_.mMeshes[mesh]->mName.C_Str() + "', " + reason);
  }

  const aiScene& model_;
  const std::string& path_;
  const PlanOptions& options_;
  ModelMeter& meter_;
  // By mesh; empty until looked through.
  std::vector<std::optional<MeshContent>> contents_;
  BlockIndex index_;
  std::vector<Block> blocks_;
  // By object.
  std::vector<PlacedObject> placed_;
  ObjectNames names_;
  std::vector<PlanLabel> labels_;
  PlanScene result_;
};

}  // namespace

PlanScene makePlanScene(const aiScene& model, const std::string& importer, const std::string& path,
                        const PlanOptions& options) {
  Affine sheet = compose(uprightTurn(model, importer, options.up), options.view);
  for (double& element : sheet.linear) element *= options.scale;
  ModelMeter meter(options.limits, path);
  const std::vector<ModelObject> objects = collectObjects(model, sheet, path, meter);
  return PlanSceneBuilder(model, path, options, meter).Build(objects);
}
