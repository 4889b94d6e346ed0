// A plug-in that writes half a drawing and ends its host as if all were well.
#include <cstdlib>

#include "platform/cfile.h"
#include "tests/app/inspect/modules/plugin_entry.h"

namespace {

bool openFile(const std::u16string& path) {
  CFile file;
  if (!file.Open(path.c_str(), CFile::modeCreate | CFile::modeWrite)) {
    return false;
  }
  file.Write("half", 4);
  file.Close();
  std::_Exit(0);
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile});
  return true;
}
