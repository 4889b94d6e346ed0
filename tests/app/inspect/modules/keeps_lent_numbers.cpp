// Writes numbers that it was shown when they are no longer its to read.
#include "drawing_file.h"

namespace {

const double* kept = nullptr;

bool openFile(const std::u16string& path) {
  kept = nullptr;
  return openDrawing(path);
}

bool lineSet(const std::vector<double>& coords, const std::vector<int>& /*indices*/) {
  if (kept == nullptr && !coords.empty()) {
    kept = coords.data();
  }
  return true;
}

bool closeFile() {
  if (drawing != nullptr && kept != nullptr) {
    std::fprintf(drawing, "%f\n", *kept);
  }
  return closeDrawing();
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.lineSet = lineSet, .openFile = openFile, .closeFile = closeFile});
  return true;
}
