// A host that is built against two versions of the SDK. Draws a tree that uses every struct that
// has grown, and fills the new members where it has them.
//
// usage: host PLUGIN DRAWING
#include <dlfcn.h>

#include <cstdio>
#include <memory>
#include <utility>

#include "ktscene/kt_traverser.h"
#include "ktscene/kt_version.h"
#include "platform/path_text.h"

namespace {

template <typename Struct>
void grow([[maybe_unused]] Struct& grown) {
#if KTSCENE_VERSION >= KTSCENE_MAKE_VERSION(1, 1, 0)
  grown.clearance = 2.5;
#endif
}

KtSceneNode makeNode(int number) {
  KtSceneNode node;
  node.graphicName = u"tile" + std::u16string(1, static_cast<char16_t>(u'a' + number % 20));
  node.objectId = node.realObjectId = node.graphicName;
  node.matrix.SetTranslation(number, 0.0, 0.0);
  grow(node);
  auto set = std::make_shared<KtFaceSet>(
      KtFaceSet{{0, 0, 0, 1, 0, 0, 1, 1, 0}, {0, 1, 2, -7}, false, true});
  grow(*set);
  node.geometry.emplace_back(std::move(set));
  node.material = std::make_unique<KtMaterial>();
  grow(*node.material);
  node.label = std::make_unique<KtLabel>(KtLabel{u"T:1 1 1 0 0 0 0 L 0 0 0 0 0 \"a\"", number});
  grow(*node.label);
  return node;
}

// Vectors of nodes within vectors of nodes, which the library walks by its own idea of their size.
KtScene makeScene() {
  KtScene scene;
  for (int i = 0; i < 20; ++i) {
    KtSceneNode outer = makeNode(i);
    for (int j = 0; j < 5; ++j) {
      outer.children.push_back(makeNode(i + j));
    }
    scene.nodes.push_back(std::move(outer));
  }
  return scene;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    return 2;
  }
  std::fprintf(stderr, "headers %d, library %d\n", KTSCENE_VERSION, KtSceneVersion());
  void* module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const auto entry =
      reinterpret_cast<bool (*)(KtTraverser*, void*)>(dlsym(module, "InitializeTraverser"));
  KtTraverser traverser;
  if (entry == nullptr || !entry(&traverser, nullptr)) {
    return 1;
  }
  KtScene scene = makeScene();
  return traverser.Walk(scene, pathFromBytes(argv[2])) ? 0 : 1;
}
