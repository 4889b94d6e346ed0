// What the labels of a model's objects say.
#pragma once

#include <string>
#include <unordered_map>

struct aiNode;
struct aiScene;

namespace dxf2d {

struct ModelObject;

// What a label says, and about which node: objects that have no readable name of their own share
// the label of the group that they belong to.
struct ObjectLabel {
  // Null: there is nothing readable to say, or the object is a helper (isHelperName).
  const aiNode* node = nullptr;
  // As textOfName returns it.
  std::u16string text;
};

// Finds the labels of one model's objects.
class LabelFinder {
 public:
  explicit LabelFinder(const aiScene& model) : model_(model) {}

  // The readable name (readableName) of the object's node, or else of its first mesh that has one,
  // or else of the nearest group above it; the model's root, which is named after the file or the
  // format, is no such group.
  ObjectLabel LabelOf(const ModelObject& object);

 private:
  struct Known {
    const aiNode* named = nullptr;
    bool isHelper = false;
  };
  // What the groups from `node` upwards say.
  Known KnownOf(const aiNode* node);

  const aiScene& model_;
  std::unordered_map<const aiNode*, Known> known_;
};

}  // namespace dxf2d
