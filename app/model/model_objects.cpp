#include "app/model/model_objects.h"

#include <assimp/scene.h>

#include "app/model/model_error.h"

namespace {

// assimp's matrices are for column vectors.
Affine fromMatrix(const aiMatrix4x4& m) {
  Affine affine;
  affine.linear = {m.a1, m.b1, m.c1, m.a2, m.b2, m.c2, m.a3, m.b3, m.c3};
  affine.shift = {m.a4, m.b4, m.c4};
  return affine;
}

[[noreturn]] void fail(const std::string& path, const aiNode& node, const std::string& reason) {
  throw ModelError(kExitInput,
                   "cannot draw '" + path + "': node '" + node.mName.C_Str() + "' " + reason);
}

ModelObject makeObject(const aiScene& model, const aiNode& node, const Affine& world,
                       const std::string& path) {
  if (!isFinite(world)) fail(path, node, "has a transform that is not finite");
  ModelObject object;
  object.name.assign(node.mName.data, node.mName.length);
  object.meshes.assign(node.mMeshes, node.mMeshes + node.mNumMeshes);
  for (const unsigned mesh : object.meshes) {
    if (mesh >= model.mNumMeshes || model.mMeshes[mesh] == nullptr) {
      fail(path, node, "names mesh " + std::to_string(mesh) + ", which does not exist");
    }
  }
  object.world = world;
  dropNoise(object.world);
  return object;
}

}  // namespace

std::vector<ModelObject> collectObjects(const aiScene& model, const Affine& sheet,
                                        const std::string& path, ModelMeter& meter) {
  struct Visit {
    const aiNode* node;
    Affine parent;
  };
  std::vector<ModelObject> objects;
  std::vector<Visit> ahead;
  if (model.mRootNode != nullptr) ahead.push_back({model.mRootNode, sheet});
  while (!ahead.empty()) {
    const Visit visit = ahead.back();
    ahead.pop_back();
    meter.AddNode();
    const aiNode& node = *visit.node;
    const Affine world = compose(fromMatrix(node.mTransformation), visit.parent);
    if (node.mNumMeshes != 0) objects.push_back(makeObject(model, node, world, path));
    for (unsigned i = node.mNumChildren; i-- > 0;) {
      // Some readers leave out children that they announced.
      if (node.mChildren[i] != nullptr) ahead.push_back({node.mChildren[i], world});
    }
  }
  return objects;
}
