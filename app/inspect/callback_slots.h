// The callback slots by number and name.
#pragma once

#include <array>

#include "ktscene/kt_traverser.h"

namespace dxf2d {

struct CallbackSlot {
  // In English.
  const char* name;
  bool filled;
};

// Slot 1 stands first.
std::array<CallbackSlot, 20> slotsOf(const KtCallbacks& callbacks);

}  // namespace dxf2d
