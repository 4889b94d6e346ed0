#include <stdexcept>

#include "plugin_entry.h"

namespace {

bool lineSet(const std::vector<double>& /*coords*/, const std::vector<int>& indices) {
  if (indices.empty()) {
    throw 0;
  }
  throw std::runtime_error("lines are beyond me");
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.lineSet = lineSet});
  return true;
}
