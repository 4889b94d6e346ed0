#include <cstdio>
#include <string>

#include "ktscene/error_box.h"
#include "ktscene/utf_text.h"
#include "platform/windows_api.h"
#include "platform/windows_text.h"

namespace dxf2d {

namespace {

// False in a program with windows that was not started from a console.
bool hasStandardError() {
  const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

}  // namespace

void showErrorBox(void* owner, const char16_t* title, const char16_t* text, int style) {
  if (hasStandardError()) {
    const std::string line = toUtf8(title) + ": " + toUtf8(text) + "\n";
    std::fputs(line.c_str(), stderr);
    return;
  }
  MessageBoxW(static_cast<HWND>(owner), windowsText(text), windowsText(title),
              static_cast<UINT>(style) | MB_ICONERROR);
}

}  // namespace dxf2d
