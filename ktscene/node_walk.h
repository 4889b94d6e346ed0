// The walk over a node and what is below it.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "ktscene/kt_callbacks.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// Walks nodes, one after the other, with the callbacks of one plug-in. Keeps the path from the
// node where the walk began on the heap. Both arguments must outlive it.
class NodeWalk {
 public:
  NodeWalk(const KtCallbacks& callbacks, const std::function<bool(std::size_t)>& progress)
      : callbacks_(callbacks), progress_(progress) {}

  // Makes the calls that KtTraverser::WalkNode lists. Returns false when `progress` did; the nodes
  // that were open are closed then, too.
  bool Run(const KtSceneNode& node);

 private:
  // A node whose closing call is still to come.
  struct OpenNode {
    const KtSceneNode* next;  // below it, to be entered next
    const KtSceneNode* end;
    bool isLod;
  };

  bool Enter(const KtSceneNode& node);
  void EnterLod(const KtSceneNode::Lod& lod);
  void ShowNode(const KtSceneNode& node, KtGraphicAttribute& attribute);

  const KtCallbacks& callbacks_;
  const std::function<bool(std::size_t)>& progress_;
  std::size_t count_ = 0;
  std::vector<OpenNode> open_;
  KtFaceSet scratch_;
};

}  // namespace dxf2d
