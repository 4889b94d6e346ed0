// The scene of the C API.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ktscene/kt_scene.h"
#include "ktscene/ktscene_c.h"

// A node whose handle stays valid whatever is added to its scene. `content` has no children.
struct KtCNode {
  KtCScene* scene = nullptr;
  // Null at the top; it comes before this node in its scene.
  const KtCNode* parent = nullptr;
  std::size_t index = 0;
  KtSceneNode content;
};

// Nodes in the order in which they were added.
struct KtCScene {
  std::vector<std::unique_ptr<KtCNode>> nodes;
};

namespace dxf2d {

// The same as a tree, whose sets it shares. Nodes without a graphic name get one that no other node
// has. Any depth is safe.
KtScene treeOf(const KtCScene& scene);

}  // namespace dxf2d
