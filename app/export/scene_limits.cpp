#include "app/export/scene_limits.h"

#include <vector>

namespace dxf2d {

namespace {

std::size_t verticesOf(const KtSceneGeometry& geometry) {
  if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&geometry)) {
    return (*faces)->coords.size() / 3;
  }
  if (const auto* lines = std::get_if<std::shared_ptr<const KtLineSet>>(&geometry)) {
    return (*lines)->coords.size() / 3;
  }
  return 0;
}

void addAll(std::vector<const KtSceneNode*>& list, const std::vector<KtSceneNode>& nodes) {
  for (const KtSceneNode& node : nodes) {
    list.push_back(&node);
  }
}

}  // namespace

void checkSceneLimits(const KtScene& scene, LimitChecker& limits) {
  std::vector<const KtSceneNode*> ahead;
  addAll(ahead, scene.nodes);
  while (!ahead.empty()) {
    const KtSceneNode& node = *ahead.back();
    ahead.pop_back();
    limits.AddNode();
    for (const KtSceneGeometry& geometry : node.geometry) {
      limits.AddVertices(verticesOf(geometry));
    }
    addAll(ahead, node.children);
    if (node.lod) {
      addAll(ahead, node.lod->levels);
    }
  }
}

}  // namespace dxf2d
