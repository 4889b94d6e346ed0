#include "app/model/plan_layout.h"

#include "app/model/block_index.h"

namespace dxf2d {

PlanLayout layOutObjects(const std::vector<ModelObject>& objects) {
  PlanLayout layout;
  layout.objects.reserve(objects.size());
  BlockIndex index;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const SplitTransform split = splitTransform(objects[i].world);
    const std::size_t number = index.FindOrAdd(objects[i].meshes, split.residual);
    if (number == layout.blocks.size()) {
      layout.blocks.push_back({i, 0, split.residual, false});
    }
    BlockPlan& block = layout.blocks[number];
    ++block.users;
    block.anyTurn = block.anyTurn || !split.placement.KeepsAxes();
    layout.objects.push_back({number, split.placement});
  }
  return layout;
}

}  // namespace dxf2d
