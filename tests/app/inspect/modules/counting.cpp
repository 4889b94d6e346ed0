// Sound, with two slots.
#include <cstdio>

#include "plugin_entry.h"

namespace {

int nodes = 0;

void openNode(KtGraphicAttribute* /*attribute*/) { ++nodes; }

bool closeFile() {
  std::printf("%d nodes\n", nodes);
  return true;
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openNode = openNode, .closeFile = closeFile});
  describeAsCounter(*traverser);
  return true;
}
