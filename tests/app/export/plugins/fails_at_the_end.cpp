// Returns false from slot 20.
#include "tests/app/inspect/modules/plugin_entry.h"

namespace {

bool closeFile() { return false; }

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.closeFile = closeFile});
  return true;
}
