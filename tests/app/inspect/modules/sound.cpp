// Does what hosts may rely on.
#include "drawing_file.h"

namespace {

void openNode(KtGraphicAttribute* /*attribute*/) {
  if (drawing != nullptr) {
    std::fputs("node\n", drawing);
  }
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.openNode = openNode});
  return true;
}
