#include "ktscene/kt_scene.h"

#include <memory>
#include <utility>

namespace {

using NodeList = std::vector<KtSceneNode>;

// A list of nodes that `node` still owns; null when there is none.
NodeList* ownedNodes(KtSceneNode& node) {
  if (node.lod && !node.lod->levels.empty()) {
    return &node.lod->levels;
  }
  return node.children.empty() ? nullptr : &node.children;
}

// Destroys `list` and all that is below it without recursion and without memory: where a node's
// own list must go first, the node moves to the front of that list, and what was left of the list
// it came from takes the place of its own. The front of a list is reached last, so that this works
// as a stack.
void dismantle(NodeList list) {
  while (!list.empty()) {
    KtSceneNode node = std::move(list.back());
    list.pop_back();
    while (NodeList* owned = ownedNodes(node)) {
      NodeList rest = std::exchange(list, std::move(*owned));
      owned->clear();
      if (rest.empty()) {
        continue;
      }
      *owned = std::move(rest);
      std::swap(node, list.front());
    }
  }
}

}  // namespace

KtSceneNode::KtSceneNode() = default;
KtSceneNode::KtSceneNode(KtSceneNode&&) noexcept = default;

KtSceneNode& KtSceneNode::operator=(KtSceneNode&& other) noexcept {
  if (this != &other) {
    // `other` may stand below this node and then goes with what this node held.
    KtSceneNode taken(std::move(other));
    std::destroy_at(this);
    std::construct_at(this, std::move(taken));
  }
  return *this;
}

KtSceneNode::~KtSceneNode() {
  if (lod) {
    dismantle(std::move(lod->levels));
  }
  dismantle(std::move(children));
}
