// The nodes of a model that carry meshes.
#pragma once

#include <string>
#include <vector>

#include "app/model/affine.h"
#include "app/model/model_limits.h"

struct aiNode;
struct aiScene;

struct ModelObject {
  std::string name;
  // Numbers of meshes that exist, in the node's order.
  std::vector<unsigned> meshes;
  // From the meshes' coordinates to those that `sheet` leads to.
  Affine world;
};

// The objects of a model in the order of its hierarchy, a node before its children, at any depth.
// `sheet` follows on every transform. Every node is counted by `meter`. `path` stands for the model
// in messages. Throws ModelError for a transform that is not finite and for a mesh that does not
// exist.
std::vector<ModelObject> collectObjects(const aiScene& model, const Affine& sheet,
                                        const std::string& path, ModelMeter& meter);
