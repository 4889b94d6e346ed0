#include "bench/measure/instance_scene.h"

#include <stdexcept>

#include "bench/measure/plugin_host.h"
#include "ktscene/kt_run_code.h"

namespace {

// As long as the ids of building models.
constexpr std::size_t kIdLength = 22;

void nameNode(KtSceneNode& node, const std::u16string& id) {
  node.graphicName = u"chair";
  node.objectId = id;
  node.realObjectId = id;
}

void drawOriginal(KtSceneNode& original) {
  const KtCallbacks& callbacks = pluginCallbacks();
  KtGraphicAttribute attribute(original);
  callbacks.openNode(&attribute);
  callbacks.faceSet({0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0}, {0, 1, 2, KtRunCode::kPolygon},
                    false, true);
  callbacks.closeNode();
}

}  // namespace

InstanceScene instanceScene(const std::vector<std::u16string>& ids) {
  InstanceScene scene;
  nameNode(scene.original, u"original");
  scene.instances.resize(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    nameNode(scene.instances[i], ids[i]);
    const std::size_t column = i % 1000;
    const std::size_t row = i / 1000;
    scene.instances[i].matrix.SetTranslation(0.5 * static_cast<double>(column),
                                             0.5 * static_cast<double>(row), 0.0);
  }
  return scene;
}

std::vector<std::u16string> objectIds(std::size_t count) {
  std::vector<std::u16string> ids;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    std::u16string id(kIdLength - number.size(), u'0');
    id.append(number.begin(), number.end());
    ids.push_back(std::move(id));
  }
  return ids;
}

void exportInstances(InstanceScene& scene, const std::string& path) {
  const KtCallbacks& callbacks = pluginCallbacks();
  ScratchExport drawing(path);
  drawOriginal(scene.original);
  for (KtSceneNode& node : scene.instances) {
    KtGraphicAttribute attribute(node);
    if (!callbacks.reuse(&attribute)) {
      throw std::runtime_error("an instance is not reused");
    }
    callbacks.closeNode();
  }
  drawing.Close();
}
