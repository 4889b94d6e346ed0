// Does not begin a second export.
#include "drawing_file.h"

namespace {

bool openFile(const std::u16string& path) {
  static bool isUsed = false;
  const bool isFirst = !isUsed;
  isUsed = true;
  return isFirst && openDrawing(path);
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.openFile = openFile});
  return true;
}
