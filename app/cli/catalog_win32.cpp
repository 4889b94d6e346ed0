#include "app/cli/catalog.h"

// gettext is no part of Windows: everything is in English there.

namespace dxf2d {

const char* catalogText(const char* text) { return text; }

const char* catalogText(const char* one, const char* many, std::uint64_t count) {
  return count == 1 ? one : many;
}

void findCatalogs() {}

}  // namespace dxf2d
