#include "app/inspect/foreign_module.h"

namespace dxf2d {

// What Windows does not load, its loader refuses in a sentence.
std::optional<ForeignModule> foreignModule(const std::string& /*path*/) { return std::nullopt; }

}  // namespace dxf2d
