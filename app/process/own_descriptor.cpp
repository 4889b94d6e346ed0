#include <unistd.h>

#include <charconv>
#include <system_error>

#include "app/process/own_descriptor.h"

namespace dxf2d {

std::optional<int> ownDescriptor(std::string_view path) {
  if (path == "/dev/stdin") {
    return STDIN_FILENO;
  }
  if (path == "/dev/stdout") {
    return STDOUT_FILENO;
  }
  if (path == "/dev/stderr") {
    return STDERR_FILENO;
  }
  for (const std::string_view directory : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!path.starts_with(directory)) {
      continue;
    }
    int number = 0;
    const char* end = path.data() + path.size();
    const auto [stopped, error] = std::from_chars(path.data() + directory.size(), end, number);
    if (error == std::errc() && stopped == end && number >= 0) {
      return number;
    }
  }
  return std::nullopt;
}

}  // namespace dxf2d
