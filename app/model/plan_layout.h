// Which objects of a model share a block, and where each is placed.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "app/model/model_objects.h"
#include "app/model/plan_extent.h"
#include "app/model/plan_placement.h"

namespace dxf2d {

// A block to be built: the geometry that all objects with the same meshes and residual transform
// share.
struct BlockPlan {
  // The first of its objects, by number.
  std::size_t firstObject = 0;
  std::size_t users = 0;
  std::array<double, 9> residual{};
  // True when a placement turns it by other than quarter turns.
  bool anyTurn = false;
};

struct PlacedObject {
  // By number.
  std::size_t block = 0;
  PlanPlacement placement;
};

struct PlanLayout {
  // In the order of their first objects.
  std::vector<BlockPlan> blocks;
  // One for each object of the model.
  std::vector<PlacedObject> objects;
};

// Where an object of which something shows lies.
struct ShownObject {
  // By number, among the model's.
  std::size_t object = 0;
  PlanExtent extent;
};

PlanLayout layOutObjects(const std::vector<ModelObject>& objects);

}  // namespace dxf2d
