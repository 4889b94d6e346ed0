// The nodes of a model that carry meshes.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/model/affine.h"
#include "app/model/model_limits.h"
#include "app/model/object_choice.h"

struct aiNode;
struct aiScene;

namespace dxf2d {

struct ModelObject {
  const aiNode* node = nullptr;
  std::string name;
  // Numbers of meshes that exist, in the node's order.
  std::vector<unsigned> meshes;
  // From the meshes' coordinates to those that `sheet` leads to.
  Affine world;
};

// A node as a walk over the hierarchy meets it.
struct VisitedNode {
  const aiNode& node;
  // Number of the parent in the order of the walk; kNoParent for the root.
  std::size_t parent;
  std::size_t depth;
  // From the node's coordinates to those that `sheet` leads to.
  Affine world;
  // The names from the root on, with slashes between them. Valid while it is visited.
  std::string_view path;
};

inline constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

std::string nameOf(const aiNode& node);

// Visits the nodes of a model in the order of its hierarchy, a node before its children, at any
// depth. `sheet` follows on every transform. Every node is counted by `limits`.
void walkNodes(const aiScene& model, const Affine& sheet, LimitChecker& limits,
               const std::function<void(const VisitedNode&)>& visit);

// The objects of a model that `filter` chooses, in the order of the walk. `path` stands for the
// model in messages. Throws ModelError for a transform that is not finite and for a mesh that does
// not exist, UsageError for a pattern that matches no node.
std::vector<ModelObject> collectObjects(const aiScene& model, const Affine& sheet,
                                        const ObjectFilter& filter, const std::string& path,
                                        LimitChecker& limits);

}  // namespace dxf2d
