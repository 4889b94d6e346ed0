#include "app/model/plan_source.h"

#include <assimp/scene.h>

#include <bit>
#include <cmath>
#include <optional>

#include "app/model/label_name.h"
#include "app/model/model_objects.h"
#include "app/model/storey.h"

namespace dxf2d {

namespace {

std::int32_t rgbOf(const Color& color) {
  std::int32_t rgb = 0;
  for (const double component : color) {
    constexpr double kMost = 255.0;
    rgb = rgb << 8 | static_cast<std::int32_t>(std::lround(component * kMost));
  }
  return rgb;
}

std::string cleaned(const std::string& name) {
  std::string readable = readableName(name);
  return readable.empty() ? name : readable;
}

// The storey that the node is in, else its parent; null at the top.
const aiNode* groupOf(const aiNode& node, const aiNode* root) {
  for (const aiNode* above = node.mParent; above != nullptr; above = above->mParent) {
    if (isStorey(*above)) {
      return above;
    }
  }
  return node.mParent == root ? nullptr : node.mParent;
}

}  // namespace

// The readable name of a node, else of its first mesh that has one; empty where there is none.
std::string SourceFinder::ReadableName(const aiNode& node) const {
  std::string name = readableName(nameOf(node));
  for (unsigned i = 0; name.empty() && i < node.mNumMeshes; ++i) {
    const aiString& mesh = model_.mMeshes[node.mMeshes[i]]->mName;
    name = readableName({mesh.data, mesh.length});
  }
  return name;
}

SourceName SourceFinder::NameOf(const aiNode& node) const {
  const aiNode* named = &node;
  std::string name = ReadableName(node);
  for (int level = 0; name.empty() && level < kMostLevels; ++level) {
    named = named->mParent;
    if (named == nullptr || named == model_.mRootNode) {
      break;
    }
    name = readableName(nameOf(*named));
  }
  if (name.empty()) {
    name = nameOf(node);
    named = &node;
  }
  // Nodes stay where they are as long as the model does.
  return {std::move(name), std::bit_cast<std::uintptr_t>(named)};
}

NodeSource SourceFinder::SourceOf(const aiNode& node) const {
  NodeSource source;
  source.object = NameOf(node);
  if (const aiNode* const group = groupOf(node, model_.mRootNode); group != nullptr) {
    source.group = {cleaned(nameOf(*group)), std::bit_cast<std::uintptr_t>(group)};
  }
  return source;
}

PartSource SourceFinder::LeafOf(unsigned mesh, PartKind kind) const {
  PartSource leaf;
  leaf.kind = kind;
  const unsigned number = model_.mMeshes[mesh]->mMaterialIndex;
  if (number >= model_.mNumMaterials || model_.mMaterials[number] == nullptr) {
    return leaf;
  }
  const aiMaterial& material = *model_.mMaterials[number];
  aiString name;
  if (material.Get(AI_MATKEY_NAME, name) == AI_SUCCESS) {
    leaf.material.assign(name.data, name.length);
  }
  if (leaf.material.empty()) {
    leaf.material = "material " + std::to_string(number + 1);
  }
  if (const std::optional<Color> color = exactColor(materialColor(material), colors_)) {
    leaf.trueColor = rgbOf(*color);
  }
  return leaf;
}

}  // namespace dxf2d
