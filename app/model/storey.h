// Storeys of buildings, as IFC models have them.
#pragma once

#include <string>
#include <vector>

#include "app/model/affine.h"
#include "app/model/model_objects.h"

struct aiNode;
struct aiScene;

namespace dxf2d {

// Height above a storey's floor, in meters, at which plans of buildings are cut.
inline constexpr double kStoreyCutMeters = 1.2;

struct Storey {
  const aiNode* node = nullptr;
  // z of its floor, in the coordinates that `sheet` leads to.
  double floor = 0.0;
};

// Whether the node is a storey, as IFC readers name it.
bool isStorey(const aiNode& node);

// The storey whose name, with or without what the reader adds to it, matches `pattern` (see
// matchesPattern). `path` stands for the model in messages. Throws UsageError when there is none,
// or more than one.
Storey findStorey(const aiScene& model, const Affine& sheet, const std::string& pattern,
                  const std::string& path);

// Leaves out the objects that are not at or below the node.
void keepObjectsBelow(const aiNode& node, std::vector<ModelObject>& objects);

}  // namespace dxf2d
