// Writes a drawing in DXF without a polyline, and does not describe itself.
#include <cstdio>

#include "platform/path_text.h"
#include "tests/app/inspect/modules/plugin_entry.h"

namespace {

std::FILE* drawing = nullptr;

bool openFile(const std::u16string& path) {
  drawing = std::fopen(pathToBytes(path).c_str(), "wb");
  return drawing != nullptr;
}

bool closeFile() {
  std::fputs(
      "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n 10\n0.0\n 20\n0.0\n 11\n1.0\n 21\n1.0\n"
      "  0\nENDSEC\n  0\nEOF\n",
      drawing);
  return std::fclose(drawing) == 0;
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile, .closeFile = closeFile});
  return true;
}
