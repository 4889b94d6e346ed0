// Leaves a thread to itself.
#include <unistd.h>

#include <thread>

#include "drawing_file.h"

namespace {

bool closeFile() {
  std::thread([] { pause(); }).detach();
  return closeDrawing();
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.closeFile = closeFile});
  return true;
}
