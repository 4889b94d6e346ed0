#include "ktscene/running_walks.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace dxf2d {

namespace {

struct Registry {
  std::mutex mutex;
  std::vector<const KtCallbacks*> running;
};

// Never destroyed: a thread may walk while the process exits.
Registry& registry() {
  static auto* const walks = new Registry;
  return *walks;
}

template <typename Callback>
bool isShared(Callback a, Callback b) {
  return a != nullptr && a == b;
}

bool shareOne(const KtCallbacks& a, const KtCallbacks& b) {
  return isShared(a.openFile, b.openFile) || isShared(a.closeFile, b.closeFile) ||
         isShared(a.openNode, b.openNode) || isShared(a.closeNode, b.closeNode) ||
         isShared(a.reuse, b.reuse) || isShared(a.openLod, b.openLod) ||
         isShared(a.closeLod, b.closeLod) || isShared(a.boundingBox, b.boundingBox) ||
         isShared(a.material, b.material) || isShared(a.matrix, b.matrix) ||
         isShared(a.faceGeometry, b.faceGeometry) || isShared(a.faceSet, b.faceSet) ||
         isShared(a.lineSet, b.lineSet) || isShared(a.pointSet, b.pointSet) ||
         isShared(a.graphicNode, b.graphicNode) || isShared(a.specialGeometry, b.specialGeometry) ||
         isShared(a.text, b.text) || isShared(a.label, b.label) ||
         isShared(a.beginFile, b.beginFile) || isShared(a.endFile, b.endFile);
}

}  // namespace

RunningWalk::RunningWalk(const KtCallbacks& callbacks) : callbacks_(callbacks) {
  Registry& walks = registry();
  const std::lock_guard lock(walks.mutex);
  if (std::ranges::any_of(walks.running,
                          [&](const KtCallbacks* other) { return shareOne(callbacks, *other); })) {
    throw KtTraverserError(
        "a walk with this plug-in is running already; wait until it ends, or load a private copy "
        "of "
        "the plug-in for each thread (KtLoadOptions::isPrivate)");
  }
  walks.running.push_back(&callbacks);
}

RunningWalk::~RunningWalk() {
  Registry& walks = registry();
  const std::lock_guard lock(walks.mutex);
  walks.running.erase(std::ranges::find(walks.running, &callbacks_));
}

}  // namespace dxf2d
