#include "app/model/object_label.h"

#include <assimp/scene.h>

#include <vector>

#include "app/drawing/label_text.h"
#include "app/model/label_name.h"
#include "app/model/model_objects.h"

namespace dxf2d {

LabelFinder::Known LabelFinder::KnownOf(const aiNode* node) {
  // Up to a node that is known, and back down: a hierarchy may be deep.
  std::vector<const aiNode*> unknown;
  while (node != nullptr && node != model_.mRootNode && !known_.contains(node)) {
    unknown.push_back(node);
    node = node->mParent;
  }
  const auto found = known_.find(node);
  Known known = found == known_.end() ? Known{} : found->second;
  for (auto group = unknown.rbegin(); group != unknown.rend(); ++group) {
    const std::string name = nameOf(**group);
    known.isHelper = known.isHelper || isHelperName(name);
    if (!readableName(name).empty()) {
      known.named = *group;
    }
    known_.emplace(*group, known);
  }
  return known;
}

ObjectLabel LabelFinder::LabelOf(const ModelObject& object) {
  const Known known = KnownOf(object.node);
  if (known.isHelper || isHelperName(object.name)) {
    return {};
  }
  std::string name = readableName(object.name);
  for (const unsigned mesh : object.meshes) {
    if (!name.empty()) {
      break;
    }
    const aiString& meshName = model_.mMeshes[mesh]->mName;
    name = readableName({meshName.data, meshName.length});
  }
  if (!name.empty()) {
    return {object.node, textOfName(name)};
  }
  if (known.named == nullptr) {
    return {};
  }
  return {known.named, textOfName(readableName(nameOf(*known.named)))};
}

}  // namespace dxf2d
