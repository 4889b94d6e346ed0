// Says that all is well, and makes no file.
#include "plugin_entry.h"

namespace {

bool openFile(const std::u16string& /*path*/) { return true; }
bool closeFile() { return true; }

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile, .closeFile = closeFile});
  return true;
}
