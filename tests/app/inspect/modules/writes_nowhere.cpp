#include "ktscene/zu_message.h"
#include "plugin_entry.h"

namespace {

bool openFile(const std::u16string& /*path*/) {
  ZuErrorBox(nullptr, u"title", u"the pen is dry", 0);
  return false;
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile});
  return true;
}
