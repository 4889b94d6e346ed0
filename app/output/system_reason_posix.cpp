#include <cstring>
#include <system_error>

#include "app/cli/translation.h"
#include "app/output/output_failures.h"

namespace dxf2d {

std::string reasonOf(int error) {
  std::string reason = std::generic_category().message(error);
  if (const char* const english = strerrordesc_np(error)) {
    rememberEnglish(reason, english);
  }
  return reason;
}

}  // namespace dxf2d
