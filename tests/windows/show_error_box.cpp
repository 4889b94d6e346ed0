// A program with windows and without a console, as one that is started from the desktop: shows an
// error box, and ends with 7 once it has been closed.
#include <windows.h>

#include "ktscene/zu_message.h"

int main() {
  // Wine hands on the descriptors of the shell.
  SetStdHandle(STD_ERROR_HANDLE, nullptr);
  ZuErrorBox(nullptr, u"DXF export error", u"C:\\plan-ä.dxf cannot be created", 0);
  return 7;
}
