#include <cstdlib>

#include "drawing_file.h"
#include "ktscene/kt_graphic_node.h"

namespace {

bool label(KtGraphicNode* node, bool /*flag*/, int /*colorIndex*/) {
  if (node->GetIsLabel()) {
    std::abort();
  }
  return false;
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.label = label});
  return true;
}
