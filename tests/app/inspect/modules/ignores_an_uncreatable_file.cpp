// Says that all is well where its file cannot be made.
#include "drawing_file.h"

namespace {

bool openFile(const std::u16string& path) {
  openDrawing(path);
  return true;
}

bool closeFile() {
  closeDrawing();
  return true;
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.openFile = openFile, .closeFile = closeFile});
  return true;
}
