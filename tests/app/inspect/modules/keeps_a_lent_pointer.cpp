// Reads the points of a face set once more when the export ends.
#include "drawing_file.h"

namespace {

const std::vector<double>* kept = nullptr;

bool openFile(const std::u16string& path) {
  kept = nullptr;
  return openDrawing(path);
}

bool faceSet(const std::vector<double>& coords, const std::vector<int>& /*indices*/,
             bool /*reverseOrientation*/, bool /*closedSurface*/) {
  if (kept == nullptr) {
    kept = &coords;
  }
  return true;
}

bool closeFile() {
  if (drawing != nullptr && kept != nullptr && !kept->empty()) {
    std::fprintf(drawing, "%f\n", kept->front());
  }
  return closeDrawing();
}

}  // namespace

PLUGIN_ENTRY {
  registerDrawing(*traverser, {.faceSet = faceSet, .openFile = openFile, .closeFile = closeFile});
  return true;
}
