#include <signal.h>
#include <unistd.h>

#include "plugin_entry.h"

namespace {

// What the user does who has waited long enough.
bool openFile(const std::u16string& /*path*/) {
  kill(getppid(), SIGTERM);
  while (true) pause();
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile});
  return true;
}
