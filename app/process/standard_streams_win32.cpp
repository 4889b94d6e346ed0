#include "app/process/standard_streams.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <initializer_list>

#include "platform/windows_api.h"

namespace dxf2d {

// What is written is what is printed, without a carriage return before each newline, and in UTF-8.
void reserveStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    if (_fileno(stream) < 0) {
      std::freopen("NUL", "r", stream);
    }
    _setmode(_fileno(stream), _O_BINARY);
  }
  SetConsoleOutputCP(CP_UTF8);
}

}  // namespace dxf2d
