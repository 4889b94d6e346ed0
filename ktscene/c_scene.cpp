#include "ktscene/c_scene.h"

#include <string>
#include <unordered_set>

namespace {

// `name` is what is drawn here, if the node has no graphic name.
KtSceneNode copyContent(const KtSceneNode& content, const std::u16string& name) {
  KtSceneNode node;
  node.graphicName = content.graphicName.empty() ? name : content.graphicName;
  node.objectId = content.objectId;
  node.realObjectId = content.realObjectId;
  node.matrix = content.matrix;
  node.color = content.color;
  node.geometry = content.geometry;
  if (content.label != nullptr) {
    node.label = std::make_unique<KtLabel>(*content.label);
  }
  return node;
}

// Makes graphic names that no node of a scene has.
class FreeNames {
 public:
  explicit FreeNames(const KtCScene& scene) {
    for (const auto& node : scene.nodes) {
      taken_.insert(node->content.graphicName);
    }
  }
  std::u16string NameOf(std::size_t index) const {
    const std::string number = std::to_string(index);
    std::u16string name = u"node-" + std::u16string(number.begin(), number.end());
    while (taken_.contains(name)) {
      name += u'+';
    }
    return name;
  }

 private:
  std::unordered_set<std::u16string> taken_;
};

}  // namespace

namespace dxf2d {

KtScene treeOf(const KtCScene& scene) {
  const std::size_t count = scene.nodes.size();
  // By node, and at the end for the scene itself: with room for all children from the start, none
  // of them moves.
  std::vector<std::size_t> childCounts(count + 1, 0);
  const auto parentOf = [&](std::size_t i) {
    return scene.nodes[i]->parent == nullptr ? count : scene.nodes[i]->parent->index;
  };
  for (std::size_t i = 0; i < count; ++i) {
    ++childCounts[parentOf(i)];
  }
  KtScene tree;
  tree.nodes.reserve(childCounts[count]);
  const FreeNames names(scene);
  std::vector<std::vector<KtSceneNode>*> children(count + 1);
  children[count] = &tree.nodes;
  for (std::size_t i = 0; i < count; ++i) {
    KtSceneNode& node =
        children[parentOf(i)]->emplace_back(copyContent(scene.nodes[i]->content, names.NameOf(i)));
    node.children.reserve(childCounts[i]);
    children[i] = &node.children;
  }
  return tree;
}

}  // namespace dxf2d
