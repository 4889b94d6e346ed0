#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "app/cli/terminal.h"

namespace dxf2d {

bool isStyled(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  const char* const kind = std::getenv("TERM");
  return isErasable(stream) && (refused == nullptr || *refused == '\0') && *kind != '\0';
}

bool isErasable(std::FILE* stream) {
  const char* const kind = std::getenv("TERM");
  return isatty(fileno(stream)) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

std::size_t lineWidth(std::FILE* stream) {
  constexpr std::size_t kUsual = 80;
  struct winsize size {};
  const bool isKnown = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
  return isKnown ? size.ws_col : kUsual;
}

}  // namespace dxf2d
