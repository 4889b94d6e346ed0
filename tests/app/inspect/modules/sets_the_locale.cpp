// Takes the process's locale for its own, and prints.
#include <clocale>

#include "drawing_file.h"

namespace {

bool openFile(const std::u16string& path) {
  std::printf("drawing\n");
  std::setlocale(LC_ALL, "C.UTF-8");
  return openDrawing(path);
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.openFile = openFile});
  return true;
}
