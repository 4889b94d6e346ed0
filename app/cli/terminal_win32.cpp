#include "app/cli/terminal.h"

#include <io.h>

#include <cstdlib>

#include "platform/windows_api.h"

namespace dxf2d {

namespace {

HANDLE consoleOf(std::FILE* stream) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

}  // namespace

bool isStyled(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  return isErasable(stream) && (refused == nullptr || *refused == '\0');
}

// Consoles take escape sequences since Windows 10, when asked to.
bool isErasable(std::FILE* stream) {
  DWORD mode = 0;
  return GetConsoleMode(consoleOf(stream), &mode) != 0 &&
         SetConsoleMode(consoleOf(stream),
                        mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t lineWidth(std::FILE* stream) {
  constexpr std::size_t kUsual = 80;
  CONSOLE_SCREEN_BUFFER_INFO info;
  const bool isKnown = GetConsoleScreenBufferInfo(consoleOf(stream), &info) != 0;
  const int width = isKnown ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
  return width > 1 ? static_cast<std::size_t>(width) : kUsual;
}

}  // namespace dxf2d
