#include <system_error>

#include "app/output/output_failures.h"

namespace dxf2d {

std::string reasonOf(int error) {
  // The C library's sentences are in English.
  return std::generic_category().message(error);
}

}  // namespace dxf2d
