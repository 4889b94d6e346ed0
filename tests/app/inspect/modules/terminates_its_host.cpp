#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "plugin_entry.h"

namespace {

// Whether the host has made something that is to be cleaned up.
bool hasBegun() {
  const char* const directory = std::getenv("TMPDIR");
  return directory != nullptr && !std::filesystem::is_empty(directory);
}

bool openFile(const std::u16string& /*path*/) { return true; }

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile});
  // Sends SIGTERM, as a user does who has waited long enough.
  while (hasBegun()) {
    kill(getppid(), SIGTERM);
    pause();
  }
  return true;
}
