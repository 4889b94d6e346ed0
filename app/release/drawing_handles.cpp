#include "app/release/drawing_handles.h"

namespace dxf2d::release {

DrawingHandles::DrawingHandles(const Drawing& drawing)
    : firstBlock_(kFirstFreeHandle + drawing.layers.size()),
      firstEntity_(firstBlock_ + 3 * drawing.blocks.size()),
      seed_(firstEntity_ + drawing.entities.size()) {
  for (const DrawingBlock& block : drawing.blocks) {
    seed_ += block.entities.size();
  }
}

}  // namespace dxf2d::release
