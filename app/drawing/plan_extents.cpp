#include "app/drawing/plan_extents.h"

namespace dxf2d {

void PlanExtents::Add(const PlanExtents& other) {
  isFinite_ = isFinite_ && other.isFinite_;
  if (other.isEmpty_) {
    return;
  }
  Add(other.low_);
  Add(other.high_);
}

}  // namespace dxf2d
