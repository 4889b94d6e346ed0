#include <unistd.h>

#include "plugin_entry.h"

namespace {

struct Hanging {
  Hanging() {
    while (true) {
      pause();
    }
  }
} const hanging;

}  // namespace

PLUGIN_ENTRY { return traverser != nullptr; }
