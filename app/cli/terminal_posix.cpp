#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "app/cli/terminal.h"

namespace dxf2d {

bool isStyled(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  const char* const kind = std::getenv("TERM");
  return isatty(fileno(stream)) == 1 && (refused == nullptr || *refused == '\0') &&
         kind != nullptr && std::string_view(kind) != "dumb" && *kind != '\0';
}

}  // namespace dxf2d
