#include "ktscene/error_box.h"

#include <cstdio>
#include <string>

#include "ktscene/utf_text.h"

namespace dxf2d {

void showErrorBox(void* /*owner*/, const char16_t* title, const char16_t* text, int /*style*/) {
  const std::string line = toUtf8(title) + ": " + toUtf8(text) + "\n";
  std::fputs(line.c_str(), stderr);
}

}  // namespace dxf2d
