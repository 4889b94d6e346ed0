#include <system_error>

#include "app/cli/own_program.h"

namespace dxf2d {

std::filesystem::path ownProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

}  // namespace dxf2d
