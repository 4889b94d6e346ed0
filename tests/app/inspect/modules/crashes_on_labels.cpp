#include <cstdlib>

#include "ktscene/kt_graphic_node.h"
#include "plugin_entry.h"

namespace {

bool label(KtGraphicNode* node, bool /*flag*/, int /*colorIndex*/) {
  if (node->GetIsLabel()) {
    std::abort();
  }
  return false;
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.label = label});
  return true;
}
