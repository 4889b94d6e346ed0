// A plug-in that runs the shell command in the environment variable MID_RUN while its host waits,
// and then lets the plug-in that REAL_PLUGIN names draw.
#include <dlfcn.h>

#include <cstdlib>

#include "tests/app/inspect/modules/plugin_entry.h"

PLUGIN_ENTRY {
  const char* const command = std::getenv("MID_RUN");
  const char* const plugin = std::getenv("REAL_PLUGIN");
  if (command == nullptr || plugin == nullptr || std::system(command) != 0) {
    return false;
  }
  void* const module = dlopen(plugin, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    return false;
  }
  const auto entry =
      reinterpret_cast<bool (*)(KtTraverser*, void*)>(dlsym(module, "InitializeTraverser"));
  return entry != nullptr && entry(traverser, nullptr);
}
