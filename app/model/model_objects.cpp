#include "app/model/model_objects.h"

#include <assimp/scene.h>

#include "app/cli/translation.h"
#include "app/model/label_name.h"
#include "app/model/model_error.h"

namespace dxf2d {
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
                   {path, tr("node '%1' %2", {node.mName.C_Str(), reason}), repairFile()});
}

ModelObject makeObject(const aiScene& model, const aiNode& node, const Affine& world,
                       const std::string& path) {
  if (!isFinite(world)) {
    fail(path, node, tr("has a transform that is not finite"));
  }
  ModelObject object;
  object.node = &node;
  object.name = nameOf(node);
  object.meshes.assign(node.mMeshes, node.mMeshes + node.mNumMeshes);
  for (const unsigned mesh : object.meshes) {
    if (mesh >= model.mNumMeshes || model.mMeshes[mesh] == nullptr) {
      fail(path, node, tr("names mesh %1, which does not exist", {std::to_string(mesh)}));
    }
  }
  object.world = world;
  dropNoise(object.world);
  return object;
}

}  // namespace

std::string nameOf(const aiNode& node) { return {node.mName.data, node.mName.length}; }

void walkNodes(const aiScene& model, const Affine& sheet, LimitChecker& limits,
               const std::function<void(const VisitedNode&)>& visit) {
  struct Ahead {
    const aiNode* node;
    Affine parentWorld;
    std::size_t parent;
    std::size_t depth;
    std::size_t parentPathLength;
  };
  std::vector<Ahead> stack;
  if (model.mRootNode != nullptr) {
    stack.push_back({model.mRootNode, sheet, kNoParent, 0, 0});
  }
  // Of the last node that was visited: it begins with the path of the next one's parent.
  std::string path;
  for (std::size_t number = 0; !stack.empty(); ++number) {
    const Ahead next = stack.back();
    stack.pop_back();
    limits.AddNode();
    const aiNode& node = *next.node;
    path.resize(next.parentPathLength);
    path.append(path.empty() ? "" : "/").append(node.mName.data, node.mName.length);
    const Affine world = compose(fromMatrix(node.mTransformation), next.parentWorld);
    visit({node, next.parent, next.depth, world, path});
    for (unsigned i = node.mNumChildren; i-- > 0;) {
      // Some readers leave out children that they announced.
      if (node.mChildren[i] != nullptr) {
        stack.push_back({node.mChildren[i], world, number, next.depth + 1, path.size()});
      }
    }
  }
}

std::vector<ModelObject> collectObjects(const aiScene& model, const Affine& sheet,
                                        const ObjectFilter& filter, const std::string& path,
                                        LimitChecker& limits) {
  std::vector<ModelObject> objects;
  ObjectChoice choice(filter);
  // By node; empty where nothing is left out.
  std::vector<ObjectChoice::Verdict> verdicts;
  std::vector<std::string> names;
  walkNodes(model, sheet, limits, [&](const VisitedNode& visited) {
    if (choice.IsNeeded()) {
      const ObjectChoice::Verdict parent =
          visited.parent == kNoParent ? choice.Start() : verdicts[visited.parent];
      const std::string name = nameOf(visited.node);
      const std::string readable = readableName(name);
      names.push_back(readable.empty() ? name : readable);
      verdicts.push_back(choice.Judge(parent, name, visited.path));
      if (!verdicts.back().IsChosen()) {
        return;
      }
    }
    if (visited.node.mNumMeshes != 0) {
      objects.push_back(makeObject(model, visited.node, visited.world, path));
    }
  });
  choice.CheckMatched(path, names);
  return objects;
}

}  // namespace dxf2d
